#pragma once
#include <QByteArray>
#include <QHash>

/// Downloads used, by token; no token is the anonymous visitor.
class QuotaBook final
{
public:
    int allowed(const QByteArray &token) const;
    int used(const QByteArray &token) const { return m_used.value(token); }
    int remaining(const QByteArray &token) const { return allowed(token) - used(token); }
    /// Takes one; what is left then, -1 when there was none.
    int take(const QByteArray &token);

private:
    QHash<QByteArray, int> m_used;
};
