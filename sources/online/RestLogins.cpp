#include "RestLogins.h"

#include <QCryptographicHash>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr Clock::Duration LoginPause = 1s;

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

Clock::Timer RestLogins::nextLogin(std::function<void()> logIn)
{
    const Clock::Duration now = m_clock.now();
    const Clock::Duration time = std::max(now, m_nextLogin);
    m_nextLogin = time + LoginPause;
    return m_clock.after(time - now, std::move(logIn));
}

void RestLogins::noteRefusal(const RestAccess &access, const base::Error &error)
{
    m_refused.insert(keyOf(access), error);
}

std::optional<base::Error> RestLogins::refusal(const RestAccess &access) const
{
    const auto known = m_refused.constFind(keyOf(access));
    return known == m_refused.constEnd() ? std::nullopt : std::optional(*known);
}
