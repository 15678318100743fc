#pragma once
#include <chrono>
#include <deque>

/// Says when the next request may go: at most `count` in any span of time. Knows no clock of its own. One
/// thread.
class RateLimiter final
{
public:
    using Duration = std::chrono::milliseconds;

    RateLimiter(int count, Duration span);

    /// How long from `now` until one more may go.
    Duration wait(Duration now) const;
    /// One goes now.
    void take(Duration now);
    /// Nothing goes before that time: the server asked for a pause.
    void pauseUntil(Duration time);
    Duration pausedUntil() const { return m_pausedUntil; }

private:
    int m_count;
    Duration m_span;
    Duration m_pausedUntil{0};
    std::deque<Duration> m_taken; // when the last ones went, the oldest first
};
