#pragma once
#include "Clock.h"
#include "RateLimiter.h"

#include <memory>

/// FIFO for the rate limit; cancelled entries use no slot, and a pause delays all waiting entries. Main
/// thread only.
class RateQueue final
{
public:
    /// Holds a waiting entry. Its destructor cancels the entry.
    using Turn = std::shared_ptr<void>;

    RateQueue(Clock &clock, RateLimiter limiter);
    ~RateQueue();

    /// Calls `go` once, on a later turn of the main thread.
    [[nodiscard]] Turn wait(std::function<void()> go);
    void pauseUntil(Clock::Duration time);
    /// The remaining time of the longest requested pause; zero without one.
    Clock::Duration pauseLeft() const;
    /// Calls every waiting entry at once, without using slots, so that each can fail.
    void callAll();

private:
    struct Ticket;
    struct Line;
    std::shared_ptr<Line> m_line; // tickets that outlive this object hold it weakly
};
