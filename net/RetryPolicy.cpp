#include "RetryPolicy.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr int TooManyRequests = 429;
constexpr int ServerError = 500;
constexpr int ServiceUnavailable = 503;
constexpr int SignInFirst = 511; // sent by the network's sign-in page, not by the service
constexpr double JitterShare = 0.2;
constexpr RetryPolicy::Duration ShortestPause = 1s;
constexpr RetryPolicy::Duration LongestPause = 24h;

/// Parses an HTTP date: "Sun, 06 Nov 1994 08:49:37 GMT".
QDateTime httpDate(const QByteArray &text)
{
    QDateTime date =
        QLocale::c().toDateTime(QString::fromLatin1(text).trimmed(), u"ddd, dd MMM yyyy HH:mm:ss 'GMT'"_s);
    date.setTimeSpec(Qt::UTC);
    return date;
}

std::optional<RetryPolicy::Duration> seconds(const QByteArray &text)
{
    bool isNumber = false;
    const qlonglong count = text.trimmed().toLongLong(&isNumber);
    constexpr qlonglong Year = 366LL * 24 * 3600;
    if (!isNumber || count < 0)
        return std::nullopt;
    return std::chrono::seconds(std::min(count, Year));
}

int triesFor(const HttpResult &outcome)
{
    if (!outcome) {
        const ServiceFailure kind = outcome.error().kind;
        const bool mayPass = kind == ServiceFailure::Offline || kind == ServiceFailure::Timeout ||
                             kind == ServiceFailure::Unavailable;
        return mayPass ? RetryPolicy::MaxTries : 1;
    }
    if (outcome->status == ServerError)
        return 2;
    return outcome->isPassingFailure() && outcome->status != SignInFirst ? RetryPolicy::MaxTries : 1;
}
} // namespace

std::optional<RetryPolicy::Duration> RetryPolicy::requestedWait(const HttpAnswer &answer,
                                                                const QDateTime &date)
{
    const QByteArray retryAfter = answer.header("Retry-After");
    std::optional<Duration> wait = seconds(retryAfter);
    if (const QDateTime until = httpDate(retryAfter); !wait && until.isValid())
        wait = std::max(Duration(date.msecsTo(until)), Duration::zero());
    if (answer.status != TooManyRequests)
        return wait;
    // The later of the two when both are given, because a request between them would be refused.
    const std::optional<Duration> reset = seconds(answer.header("RateLimit-Reset"));
    return wait && reset ? std::max(*wait, *reset) : wait ? wait : reset;
}

std::optional<RetryPolicy::Duration> RetryPolicy::pauseAfter(const HttpResult &outcome, const QDateTime &date)
{
    const bool isTooFast = outcome && outcome->status == TooManyRequests;
    const bool isDown = outcome && outcome->status == ServiceUnavailable;
    if (!isTooFast && !isDown)
        return std::nullopt;
    const Duration requested = requestedWait(*outcome, date).value_or(ShortestPause);
    if (isDown && requested <= MaxWait)
        return std::nullopt; // other requests may succeed
    return std::clamp<Duration>(requested, ShortestPause, LongestPause);
}

std::optional<RetryPolicy::Duration> RetryPolicy::waitBeforeNextTry(const HttpRequest &request,
                                                                    const HttpResult &outcome, int tries,
                                                                    double jitter, const QDateTime &date)
{
    if (request.method != HttpRequest::Method::Get || tries >= triesFor(outcome))
        return std::nullopt;
    const double backOff = 1000.0 * (1 << (tries - 1)) * (1.0 + JitterShare * jitter);
    Duration wait(static_cast<Duration::rep>(backOff));
    if (outcome) {
        if (const auto requested = requestedWait(*outcome, date))
            wait = std::max(*requested, ShortestPause);
        else if (outcome->status == TooManyRequests)
            wait = std::max(wait, ShortestPause);
    }
    if (wait > MaxWait)
        return std::nullopt;
    return wait;
}
