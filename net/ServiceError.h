#pragma once
#include <base/Result.h>
#include <QDateTime>

/// Why a request to a network service failed. An empty list of results is not a failure.
enum class ServiceFailure
{
    Offline = 1,      // there is no network, or the host name does not resolve
    Timeout,          // no answer in time
    Unavailable,      // connection refused or broken, or the service reports that it is down
    BadAnswer,        // the answer cannot be parsed
    Insecure,         // no trusted TLS connection
    Proxy,            // the proxy refused
    KeyRefused,       // the application key is unknown to the service
    LoginRefused,     // user name or password not accepted
    LimitReached,     // the day's downloads are used up
    TooManyRequests,  // too fast for the service, even after waiting
    Rejected,         // the service refuses this request
    LinkExpired,      // a download's address is no longer valid
    NotASubtitle,     // the downloaded file is not a subtitle
    UnknownLanguage,  // the service has no code for the language
    NothingToAsk,     // no words to search for
    NotFound,         // the service has no such item
    ForbiddenAddress, // the request's address is not permitted
};

/// Why a request got no answer. Has no sentence. The code that shows it names the server.
struct TransportFault
{
    /// What a server asked for that is too long to wait for. In UTC.
    struct Pause
    {
        QDateTime begin;
        QDateTime end;
    };

    ServiceFailure kind = ServiceFailure::Unavailable;
    QString detail; // for the log
    std::optional<Pause> pause = {};
};

/// The service that an error's sentence names.
enum class ServiceName
{
    Subtitles,
    Films
};

/// An Error whose code is the kind and whose sentence says what a person can do, and when a pause ends in
/// local time. Secrets are removed from `detail`.
base::Error serviceError(ServiceFailure kind, ServiceName service, const QString &detail);
base::Error serviceError(const TransportFault &fault, ServiceName service);
/// The download limit of the subtitle service is reached. The sentence says when it ends, in local time, if
/// `reset` is valid and after `now`.
base::Error limitError(std::optional<int> allowed, const QDateTime &reset, const QDateTime &now,
                       const QString &detail);

/// The sentence for faults that concern no certain server: Proxy and ForbiddenAddress; empty for others.
QString commonSentence(ServiceFailure kind);

/// The kind of an Error made by these functions; none for other Errors.
std::optional<ServiceFailure> kindOf(const base::Error &error);
