#pragma once
#include <QDateTime>
#include <chrono>
#include <functional>
#include <utility>

/// Time as the network services see it, so that tests can drive it. Main thread only.
class Clock
{
public:
    using Duration = std::chrono::milliseconds;

    /// Something that is to happen later. Forgets it when it goes.
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

    /// Time that only moves forward and knows nothing of the date: for waits, deadlines and rates.
    virtual Duration now() const = 0;
    /// The date and time in UTC, which a person or the network may set at will: for what servers and files
    /// date.
    virtual QDateTime date() const = 0;
    /// Calls `action` once, on a later turn of the main thread.
    virtual Timer after(Duration delay, std::function<void()> action) = 0;
};
