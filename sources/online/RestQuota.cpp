#include "RestQuota.h"

#include <net/Json.h>

using namespace Qt::StringLiterals;

namespace
{
// The quota is daily; a later reset comes from a wrong clock, here or there.
constexpr qint64 LongestWaitSeconds = 25LL * 3600;
} // namespace

bool RestQuota::isUsedUp(const QDateTime &date) const
{
    return remaining && *remaining <= 0 && reset.isValid() && reset > date &&
           date.secsTo(reset) < LongestWaitSeconds;
}

base::Error RestQuota::error(const QDateTime &date, const QString &detail) const
{
    const bool isPlausible = reset.isValid() && date.secsTo(reset) < LongestWaitSeconds;
    return limitError(allowed, isPlausible ? reset : QDateTime(), date, detail);
}

void RestQuota::takeOrder(const QJsonObject &answer)
{
    if (const auto left = Json::smallInteger(answer, u"remaining"_s))
        remaining = std::max(*left, 0);
    if (const auto used = Json::smallInteger(answer, u"requests"_s); used && remaining && !allowed)
        allowed = *remaining > 0 ? *used + *remaining : std::optional<int>();
    const QDateTime date = QDateTime::fromString(Json::text(answer, u"reset_time_utc"_s), Qt::ISODateWithMs);
    if (date.isValid())
        reset = date.toUTC();
}

void RestQuota::takeUser(const QJsonObject &user)
{
    if (const auto count = Json::smallInteger(user, u"allowed_downloads"_s); count && *count > 0)
        allowed = count;
    if (const auto left = Json::smallInteger(user, u"remaining_downloads"_s))
        remaining = std::max(*left, 0);
}
