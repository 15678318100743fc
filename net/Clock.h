#pragma once
#include <QDateTime>
#include <QObject>
#include <chrono>
#include <functional>
#include <memory>

/// The machine's clocks. Tests derive a clock that they drive. Main thread only.
class Clock
{
public:
    using Duration = std::chrono::milliseconds;
    /// Holds a scheduled call. Releasing it cancels the call.
    using Timer = std::shared_ptr<void>;

    virtual ~Clock();

    /// Monotonic time, independent of the date: for waits, deadlines and rates.
    virtual Duration now() const;
    /// The date and time in UTC, which may be set back or forward at any time: for dates of servers and
    /// files.
    virtual QDateTime date() const;
    /// Calls `action` once, on a later turn of the main thread.
    [[nodiscard]] virtual Timer after(Duration delay, std::function<void()> action);

private:
    QObject m_timers; // parent of the running timers
};
