#include "RateQueue.h"

#include <algorithm>
#include <deque>
#include <utility>

/// The waiting tickets and the timer for the first of them.
struct RateQueue::Line : std::enable_shared_from_this<Line>
{
    Clock &clock;
    RateLimiter limiter;
    std::deque<std::weak_ptr<Ticket>> waiting;
    Clock::Timer next;

    Line(Clock &itsClock, RateLimiter itsLimiter) : clock(itsClock), limiter(std::move(itsLimiter)) {}

    void plan();
    void letGo();
    void callAll();
    void forgetThoseWhoLeft();
};

struct RateQueue::Ticket
{
    std::weak_ptr<Line> line;
    std::function<void()> go; // empty once called

    ~Ticket()
    {
        if (const auto all = go ? line.lock() : nullptr)
            all->forgetThoseWhoLeft();
    }
};

void RateQueue::Line::plan()
{
    next = clock.after(limiter.wait(clock.now()), [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->letGo();
    });
}

void RateQueue::Line::letGo()
{
    while (!waiting.empty() && limiter.wait(clock.now()) == Clock::Duration::zero()) {
        const std::shared_ptr<Ticket> first = waiting.front().lock();
        waiting.pop_front();
        if (!first)
            continue;
        limiter.take(clock.now());
        std::exchange(first->go, nullptr)();
    }
    if (!waiting.empty())
        plan();
}

void RateQueue::Line::callAll()
{
    next.cancel();
    for (const std::weak_ptr<Ticket> &ticket : std::exchange(waiting, {})) {
        if (const std::shared_ptr<Ticket> held = ticket.lock())
            std::exchange(held->go, nullptr)();
    }
}

void RateQueue::Line::forgetThoseWhoLeft()
{
    std::erase_if(waiting, [](const std::weak_ptr<Ticket> &ticket) { return ticket.expired(); });
    if (waiting.empty())
        next.cancel();
}

RateQueue::RateQueue(Clock &clock, RateLimiter limiter)
    : m_line(std::make_shared<Line>(clock, std::move(limiter)))
{
}

RateQueue::~RateQueue() = default;

RateQueue::Turn RateQueue::wait(std::function<void()> go)
{
    const auto ticket = std::make_shared<Ticket>(Ticket{m_line, std::move(go)});
    m_line->waiting.push_back(ticket);
    if (m_line->waiting.size() == 1)
        m_line->plan();
    return ticket;
}

void RateQueue::pauseUntil(Clock::Duration time)
{
    m_line->limiter.pauseUntil(time);
}

Clock::Duration RateQueue::pauseLeft() const
{
    return std::max(m_line->limiter.pausedUntil() - m_line->clock.now(), Clock::Duration::zero());
}

void RateQueue::callAll()
{
    m_line->callAll();
}
