#include "OutstandingQueries.h"

quint64 OutstandingQueries::begin()
{
    const std::scoped_lock lock(m_mutex);
    m_outstanding.insert(++m_last);
    return m_last;
}

bool OutstandingQueries::isOutstanding(quint64 query) const
{
    const std::scoped_lock lock(m_mutex);
    return m_outstanding.contains(query);
}

void OutstandingQueries::finish(quint64 query, const std::function<void()> &answer)
{
    const std::scoped_lock answering(m_answering);
    {
        const std::scoped_lock lock(m_mutex);
        if (m_outstanding.erase(query) == 0)
            return;
    }
    answer();
}

void OutstandingQueries::cancelAll()
{
    const std::scoped_lock lock(m_answering, m_mutex);
    m_outstanding.clear();
}
