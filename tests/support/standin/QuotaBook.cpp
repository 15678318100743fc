#include "QuotaBook.h"

namespace
{
constexpr int Anonymous = 5;
constexpr int Registered = 20;
} // namespace

int QuotaBook::allowed(const QByteArray &token) const
{
    return token.isEmpty() ? Anonymous : Registered;
}

int QuotaBook::take(const QByteArray &token)
{
    if (remaining(token) <= 0)
        return -1;
    ++m_used[token];
    return remaining(token);
}
