#pragma once
#include <QDateTime>
#include <chrono>
#include <functional>
#include <utility>

/// The clock of the network services, which tests can control. Main thread only.
class Clock
{
public:
    using Duration = std::chrono::milliseconds;

    /// A scheduled call. The destructor cancels it.
    class Timer final
    {
    public:
        Timer() = default;
        explicit Timer(std::function<void()> cancel) : m_cancel(std::move(cancel)) {}
        Timer(Timer &&other) noexcept : m_cancel(std::exchange(other.m_cancel, nullptr)) {}
        Timer &operator=(Timer &&other) noexcept;
        ~Timer() { cancel(); }
        void cancel();

    private:
        std::function<void()> m_cancel;
    };

    virtual ~Clock();

    /// Monotonic time, independent of the date: for waits, deadlines and rates.
    virtual Duration now() const = 0;
    /// The date and time in UTC, which may be set back or forward at any time: for dates of servers and
    /// files.
    virtual QDateTime date() const = 0;
    /// Calls `action` once, on a later turn of the main thread.
    virtual Timer after(Duration delay, std::function<void()> action) = 0;
};
