#include "UpdateSchedule.h"

#include <algorithm>

namespace
{
constexpr qint64 LongestSeconds = 366LL * 24 * 60 * 60;
}

std::optional<UpdateSchedule::Duration> UpdateSchedule::waitFrom(const QDateTime &now) const
{
    if (!isAutomatic)
        return std::nullopt;
    if (!lastCheck.isValid() || lastCheck > now)
        return Duration::zero();
    const qint64 wanted = intervalSeconds > 0 ? intervalSeconds : StandardInterval.count();
    const auto interval = std::clamp<qint64>(wanted, ShortestInterval.count(), LongestSeconds);
    const qint64 passed = std::min(lastCheck.secsTo(now), interval);
    return std::chrono::seconds(interval - passed);
}
