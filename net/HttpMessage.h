#pragma once
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QUrl>
#include <chrono>
#include <functional>
#include <utility>

/// A request to a server. A plain value.
struct HttpRequest
{
    enum class Method
    {
        Get,
        Post,
        Delete
    };

    Method method = Method::Get;
    QUrl url;
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;
    qsizetype maxBytes = 4LL * 1024 * 1024; // of the answer, unpacked
    std::chrono::milliseconds deadline = std::chrono::seconds(60);
    bool isAwaited = true; // by a person, who is told why it takes its time
    /// Called each time just before the request leaves this machine: all waits are over then.
    std::function<void()> onLeaving = {};

    void setHeader(const QByteArray &name, const QByteArray &value);
};

/// The answer of a server with any status. A plain value.
struct HttpAnswer
{
    int status = 0;
    QHash<QByteArray, QByteArray> headers; // by lower-case name
    QByteArray body;
    QUrl url; // the address that answered, after redirects

    QByteArray header(const QByteArray &name) const { return headers.value(name.toLower()); }
    /// Whether the body is shorter than its Content-Length, when there is one.
    bool isCutShort() const;
    bool isSuccess() const { return status >= 200 && status < 300; }
};
