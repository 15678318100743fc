#pragma once
#include "Clock.h"
#include "RateLimiter.h"

#include <memory>

/// Those who wait for their turn at a limited rate, in the order they came. A place is taken by going, not by
/// waiting: whoever gives up costs the others nothing, and a pause holds up all who have not gone. Main
/// thread only.
class RateQueue final
{
public:
    /// Holding it keeps the wait; letting it go gives it up.
    using Turn = std::shared_ptr<void>;

    RateQueue(Clock &clock, RateLimiter limiter);
    ~RateQueue();

    /// Calls `go` once, on a later turn of the main thread.
    [[nodiscard]] Turn wait(std::function<void()> go);
    void pauseUntil(Clock::Duration time);
    /// How much is left of the longest pause asked for; zero without one.
    Clock::Duration pauseLeft() const;
    /// Ends every wait at once: those who wait learn that it is in vain. Takes no places.
    void callAll();

private:
    struct Ticket;
    struct Line;
    std::shared_ptr<Line> m_line; // what tickets that outlive us look for in vain
};
