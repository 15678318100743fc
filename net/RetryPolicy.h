#pragma once
#include "HttpMessage.h"
#include "ServiceError.h"

#include <base/Result.h>

#include <chrono>

/// Whether and when a request is worth another try. Plain functions, any thread.
namespace RetryPolicy
{
using Duration = std::chrono::milliseconds;

inline constexpr int MaxTries = 3;
/// A server that asks for more is not waited for: the person is told when it may be asked again.
inline constexpr Duration MaxWait = std::chrono::seconds(15);

/// How long to wait before the try after `tries` of them, the last of which gave `outcome`; nothing to leave
/// it at that. `jitter` lies between -1 and 1.
std::optional<Duration> waitBeforeNextTry(const HttpRequest &request, const Result<HttpAnswer> &outcome,
                                          int tries, double jitter, const QDateTime &date);

/// How long no request should go out after that outcome: the service refused for speed, or is down and named
/// a time that is longer than MaxWait. At most a day.
std::optional<Duration> pauseAfter(const Result<HttpAnswer> &outcome, const QDateTime &date);

/// What the answer's Retry-After (seconds or a date) and, on a refusal for speed, RateLimit-Reset ask for.
std::optional<Duration> requestedWait(const HttpAnswer &answer, const QDateTime &date);
} // namespace RetryPolicy
