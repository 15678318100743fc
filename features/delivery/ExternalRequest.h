#pragma once
#include <base/Result.h>
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

/// A video file to search subtitles for, and the application that asks for it, if one does.
struct ExternalRequest
{
    QUrl url;
    std::optional<ExternalRequestInfo> requestInfo;

    bool operator==(const ExternalRequest &) const = default;
};

/// Takes video files to search subtitles for: the main window's content controller, as the drop target
/// and incoming requests see it.
class FileSearching
{
public:
    virtual ~FileSearching() = default;
    virtual void searchForFile(const QUrl &url, const std::optional<ExternalRequestInfo> &requestInfo) = 0;
};

/// Reads a URL by which a companion application asks for subtitles: the query items "fileurl" (the video),
/// "docid" and "sender" (the requester). Scheme, host and path are arbitrary. Nothing for a text that is not
/// a URL; an Error to show for a URL without a video.
Result<std::optional<ExternalRequest>> readExternalRequest(const std::optional<QString> &text);
