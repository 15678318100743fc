#pragma once
#include <QDateTime>
#include <chrono>
#include <optional>

/// When the next check comes by itself. A plain value, any thread.
struct UpdateSchedule
{
    using Duration = std::chrono::milliseconds;

    static constexpr std::chrono::seconds StandardInterval = std::chrono::hours(24);
    /// Whatever the settings say, a server is asked no more often.
    static constexpr std::chrono::seconds ShortestInterval = std::chrono::hours(1);

    bool isAutomatic = false;
    qint64 intervalSeconds = 0; // 0 and less mean the standard
    QDateTime lastCheck;        // invalid before the first

    /// How long to wait from `now` on: zero when a check is due, nothing when none is to come. A last check
    /// in the future tells of a clock that was wrong, not of a check.
    std::optional<Duration> waitFrom(const QDateTime &now) const;
};
