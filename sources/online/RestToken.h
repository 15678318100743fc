#pragma once
#include <net/Clock.h>
#include <QByteArray>

/// A login token and its expiry. A plain value.
class RestToken final
{
public:
    RestToken() = default;
    RestToken(const QByteArray &text, const Clock &clock);

    const QByteArray &text() const { return m_text; }
    bool isValid(const Clock &clock) const;

private:
    QByteArray m_text;
    Clock::Duration m_ends{0};
    QDateTime m_endDate;
};
