#include "RateLimiter.h"

#include <algorithm>

RateLimiter::RateLimiter(int count, Duration span) : m_count(count), m_span(span) {}

RateLimiter::Duration RateLimiter::reserve(Duration now)
{
    Duration place = std::max(now, m_pausedUntil);
    if (!m_taken.empty())
        place = std::max(place, m_taken.back());
    if (m_taken.size() == static_cast<std::size_t>(m_count))
        place = std::max(place, m_taken.front() + m_span);
    m_taken.push_back(place);
    if (m_taken.size() > static_cast<std::size_t>(m_count))
        m_taken.pop_front();
    return place - now;
}

void RateLimiter::pauseUntil(Duration time)
{
    m_pausedUntil = std::max(m_pausedUntil, time);
}
