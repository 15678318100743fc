#pragma once
#include "ServiceError.h"

#include <base/Result.h>

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
    qsizetype maxBytes = 4LL * 1024 * 1024;                        // of the answer, unpacked
    std::chrono::milliseconds deadline = std::chrono::seconds(60); // for one try with its redirects
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

    QByteArray header(const QByteArray &name) const { return headers.value(name.toLower()); }
    /// Whether the body is shorter than its Content-Length, when there is one.
    bool isCutShort() const;
    bool isSuccess() const { return status >= 200 && status < 300; }
    /// Whether the server fails or refuses for now, so that the same request may succeed later.
    bool isPassingFailure() const { return status == 429 || status >= 500; }
};

/// What came of a request.
using HttpResult = Result<HttpAnswer, TransportFault>;
using HttpCompletion = std::function<void(const HttpResult &)>;
/// Holds a running request. Releasing it cancels the request, whose completion is then not called.
using HttpCall = std::shared_ptr<void>;
