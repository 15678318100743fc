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

/// How long the token says it lives, from its middle part; the usual where it says nothing that this
/// machine's date allows.
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
    // With a wrong date every token would look dead or eternal; the server will say when it is.
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
    // The date also moves while the machine sleeps, the other clock need not.
    return !m_text.isEmpty() && clock.now() < m_ends && clock.date() < m_endDate;
}
