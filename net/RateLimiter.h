#pragma once
#include <chrono>
#include <deque>

/// Computes when the next request may be sent: at most `count` in any span of time. Does not read a clock.
/// One thread.
class RateLimiter final
{
public:
    using Duration = std::chrono::milliseconds;

    RateLimiter(int count, Duration span);

    /// The time from `now` until another request may be sent.
    Duration wait(Duration now) const;
    /// Records that a request is sent now.
    void take(Duration now);
    /// Allows no request before that time: the server asked for a pause.
    void pauseUntil(Duration time);
    Duration pausedUntil() const { return m_pausedUntil; }

private:
    int m_count;
    Duration m_span;
    Duration m_pausedUntil{0};
    std::deque<Duration> m_taken; // the times of the last requests, the oldest first
};
