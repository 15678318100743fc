#pragma once
#include "HttpMessage.h"

#include <chrono>

/// Whether and when a failed request is retried. Plain functions, any thread.
namespace RetryPolicy
{
using Duration = std::chrono::milliseconds;

inline constexpr int MaxTries = 3;
/// A longer wait is not retried; the person sees when the server may be asked again.
inline constexpr Duration MaxWait = std::chrono::seconds(15);

/// The wait before the next attempt after `tries` attempts, the last of which gave `outcome`; none when there
/// is no retry. `jitter` lies between -1 and 1.
std::optional<Duration> waitBeforeNextTry(const HttpRequest &request, const HttpResult &outcome, int tries,
                                          double jitter, const QDateTime &date);

/// How long no request may be sent after that outcome: the service refused for speed, or is down and named a
/// time longer than MaxWait. At most a day.
std::optional<Duration> pauseAfter(const HttpResult &outcome, const QDateTime &date);

/// The wait that the answer's Retry-After (seconds or a date) and, for a rate refusal, RateLimit-Reset ask
/// for.
std::optional<Duration> requestedWait(const HttpAnswer &answer, const QDateTime &date);
} // namespace RetryPolicy
