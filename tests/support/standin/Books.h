#pragma once
#include <QByteArray>
#include <QHash>
#include <QList>
#include <algorithm>

/// Counts requests per second as the service does, five at most, and remembers the worst second.
class RateBook final
{
public:
    /// Notes a request; false for one too many. Refused ones count as well.
    bool admit(qint64 milliseconds)
    {
        m_times += milliseconds;
        m_most = std::max(m_most, countInLastSecond(milliseconds));
        return countInLastSecond(milliseconds) <= PerSecond;
    }
    int left(qint64 milliseconds) const { return std::max(0, PerSecond - countInLastSecond(milliseconds)); }
    int mostInOneSecond() const { return m_most; }
    /// The times of all requests, in milliseconds.
    const QList<qint64> &times() const { return m_times; }

private:
    static constexpr int PerSecond = 5;

    int countInLastSecond(qint64 milliseconds) const
    {
        const auto isRecent = [=](qint64 time) { return time > milliseconds - 1000; };
        return static_cast<int>(std::count_if(m_times.begin(), m_times.end(), isRecent));
    }

    QList<qint64> m_times;
    int m_most = 0;
};

/// Downloads used, by token; no token is the anonymous visitor.
class QuotaBook final
{
public:
    int allowed(const QByteArray &token) const { return token.isEmpty() ? 5 : 20; }
    int used(const QByteArray &token) const { return m_used.value(token); }
    int remaining(const QByteArray &token) const { return allowed(token) - used(token); }
    /// Takes one; what is left then, -1 when there was none.
    int take(const QByteArray &token)
    {
        if (remaining(token) <= 0)
            return -1;
        ++m_used[token];
        return remaining(token);
    }

private:
    QHash<QByteArray, int> m_used;
};
