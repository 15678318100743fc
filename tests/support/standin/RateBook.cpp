#include "RateBook.h"

#include <algorithm>

namespace
{
constexpr int PerSecond = 5;
constexpr qint64 Second = 1000;
} // namespace

int RateBook::countInLastSecond(qint64 milliseconds) const
{
    return static_cast<int>(std::count_if(m_times.begin(), m_times.end(),
                                          [=](qint64 time) { return time > milliseconds - Second; }));
}

bool RateBook::admit(qint64 milliseconds)
{
    m_times += milliseconds;
    const int count = countInLastSecond(milliseconds);
    m_most = std::max(m_most, count);
    return count <= PerSecond;
}

int RateBook::left(qint64 milliseconds) const
{
    return std::max(0, PerSecond - countInLastSecond(milliseconds));
}
