#pragma once
#include <base/Error.h>
#include <QDateTime>

/// Why a network service could not do what was asked. An empty list of results is none of these.
enum class ServiceFailure
{
    Offline = 1,     // this machine reaches no network, or not this name
    Timeout,         // no answer in time
    Unavailable,     // nobody listens, the connection broke off, or the service says it is down
    BadAnswer,       // an answer that makes no sense
    Insecure,        // the connection could not be made private
    Proxy,           // the proxy of this network refused
    KeyRefused,      // the application key is unknown to the service
    LoginRefused,    // user name or password not accepted
    LimitReached,    // the day's downloads are used up
    TooManyRequests, // too fast for the service, even after waiting
    Rejected,        // the service does not take this request
    LinkExpired,     // a download's address is no longer valid
    NotASubtitle,    // what came is no subtitle file
    UnknownLanguage, // the service has no code for the language
    NothingToAsk,    // no words to search for
    NotFound,        // the service answers, and has no such thing
};

/// The service that a sentence talks about.
enum class ServiceName
{
    Subtitles,
    Films
};

/// An Error whose code is the kind and whose sentence says what a person can do. `detail` is cleaned of
/// secrets.
Error serviceError(ServiceFailure kind, ServiceName service, const QString &detail);
/// The limit was reached: says when it ends, in local time, where `reset` is valid and after `now`.
Error limitError(ServiceName service, std::optional<int> allowed, const QDateTime &reset,
                 const QDateTime &now, const QString &detail);

/// The service wants to be left alone: says until when, in local time. `kind` is TooManyRequests or
/// Unavailable.
Error pauseError(ServiceFailure kind, ServiceName service, const QDateTime &end, const QDateTime &now);

/// The kind of an Error made by the functions above; nothing for any other Error.
std::optional<ServiceFailure> kindOf(const Error &error);
