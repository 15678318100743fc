#pragma once
#include <QList>

/// Counts requests per second as the service does, five at most, and remembers the worst second.
class RateBook final
{
public:
    /// Notes a request; false for one too many. Refused ones count as well.
    bool admit(qint64 milliseconds);
    int left(qint64 milliseconds) const;
    int mostInOneSecond() const { return m_most; }
    /// The times of all requests, in milliseconds.
    const QList<qint64> &times() const { return m_times; }

private:
    int countInLastSecond(qint64 milliseconds) const;

    QList<qint64> m_times;
    int m_most = 0;
};
