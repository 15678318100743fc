#pragma once
#include <QString>
#include <QUrl>
#include <optional>

/// The application that asked for the current search, and how to answer it.
struct ExternalRequestInfo
{
    QString urlScheme; // the requester's own URL scheme
    QString docID;     // the requester's document identifier, returned in the reply
    QString name;      // shown in "Send to %@"

    bool operator==(const ExternalRequestInfo &) const = default;
};

/// A request that is kept until the main view can take it.
struct ExternalRequest
{
    QUrl url;
    std::optional<ExternalRequestInfo> requestInfo;

    bool operator==(const ExternalRequest &) const = default;
};
