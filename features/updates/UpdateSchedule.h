#pragma once
#include <QDateTime>
#include <chrono>
#include <optional>

/// Computes the time of the next automatic check. A plain value, any thread.
struct UpdateSchedule
{
    using Duration = std::chrono::milliseconds;

    static constexpr std::chrono::seconds StandardInterval = std::chrono::hours(24);
    /// The lower limit of the interval in the settings, to protect the server.
    static constexpr std::chrono::seconds ShortestInterval = std::chrono::hours(1);

    bool isAutomatic = false;
    qint64 intervalSeconds = 0; // 0 and negative values mean the standard
    QDateTime lastCheck;        // invalid before the first

    /// The wait from `now`: zero when a check is due, none when automatic checks are off. A last check in the
    /// future comes from a wrong clock and is ignored.
    std::optional<Duration> waitFrom(const QDateTime &now) const;
};
