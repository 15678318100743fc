#include "RateLimiter.h"

#include <algorithm>

RateLimiter::RateLimiter(int count, Duration span) : m_count(count), m_span(span) {}

RateLimiter::Duration RateLimiter::wait(Duration now) const
{
    Duration next = std::max(now, m_pausedUntil);
    if (m_taken.size() == static_cast<std::size_t>(m_count))
        next = std::max(next, m_taken.front() + m_span);
    return next - now;
}

void RateLimiter::take(Duration now)
{
    m_taken.push_back(now);
    if (m_taken.size() > static_cast<std::size_t>(m_count))
        m_taken.pop_front();
}

void RateLimiter::pauseUntil(Duration time)
{
    m_pausedUntil = std::max(m_pausedUntil, time);
}
