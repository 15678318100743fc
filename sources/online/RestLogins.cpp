#include "RestLogins.h"

#include <QCryptographicHash>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
/// The application key is not part of it, because it does not affect the password check.
QByteArray keyOf(const RestAccess &access)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QByteArray &part :
         {access.base.toEncoded(), access.userName.toUtf8(), access.password.toUtf8()}) {
        hash.addData(QByteArray::number(part.size()) + ':');
        hash.addData(part);
    }
    return hash.result();
}
} // namespace

RestLogins::RestLogins(Clock &clock) : m_rate(clock, RateLimiter(1, 1s)) {}

void RestLogins::noteRefusal(const RestAccess &access, const base::Error &error)
{
    m_refused.insert(keyOf(access), error);
}

std::optional<base::Error> RestLogins::refusal(const RestAccess &access) const
{
    const auto known = m_refused.constFind(keyOf(access));
    return known == m_refused.constEnd() ? std::nullopt : std::optional(*known);
}
