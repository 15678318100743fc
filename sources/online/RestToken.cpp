#include "RestToken.h"

#include <net/Json.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr Clock::Duration LifeUnlessSaid = 12h;
constexpr Clock::Duration LongestLife = 24h;
constexpr Clock::Duration ShortestLife = 1min;
constexpr Clock::Duration Early = 10min;

/// The lifetime in the token's payload; the default when it has none that is plausible at this machine's
/// date.
Clock::Duration lifeOf(const QByteArray &token, const QDateTime &date)
{
    const QByteArray claims =
        QByteArray::fromBase64(token.split('.').value(1), QByteArray::Base64UrlEncoding);
    const auto object = Json::object(claims);
    const std::optional<qint64> end = object ? Json::integer(*object, u"exp"_s) : std::nullopt;
    if (!end)
        return LifeUnlessSaid;
    const Clock::Duration life =
        std::chrono::seconds(std::clamp<qint64>(*end, 0, 1LL << 40) - date.toSecsSinceEpoch());
    // A wrong system date would make every token look expired or endless; the server then reports the expiry.
    if (life <= Clock::Duration::zero() || life > LongestLife + Early)
        return LifeUnlessSaid;
    return std::max(life - Early, ShortestLife);
}
} // namespace

RestToken::RestToken(const QByteArray &text, const Clock &clock) : m_text(text)
{
    const Clock::Duration life = lifeOf(text, clock.date());
    m_ends = clock.now() + life;
    m_endDate = clock.date().addDuration(life);
}

bool RestToken::isValid(const Clock &clock) const
{
    // The date also advances during a suspend, unlike the monotonic clock.
    return !m_text.isEmpty() && clock.now() < m_ends && clock.date() < m_endDate;
}
