#include "RestQuota.h"

#include "RestErrors.h"

#include <base/LocalizedString.h>
#include <net/Json.h>

using namespace Qt::StringLiterals;

namespace
{
// The quota is daily; a later reset comes from a wrong clock, here or there.
constexpr qint64 MaxWaitSeconds = 25LL * 3600;
constexpr auto QuotaKey = "remaining"_L1;

/// The refusal of an order that was sent without an account.
base::Error accountWanted(base::Error error)
{
    error.localizedDescription = String::localize(
        u"The subtitle service wants an account for downloads. Enter user name and password in the "
        "preferences."_s);
    return error;
}

base::Error badAnswer(const QString &detail)
{
    return serviceError(ServiceFailure::BadAnswer, ServiceName::Subtitles, detail);
}
} // namespace

bool RestQuota::isUsedUp(const QDateTime &date) const
{
    return remaining && *remaining <= 0 && reset.isValid() && reset > date &&
           date.secsTo(reset) < MaxWaitSeconds;
}

base::Error RestQuota::error(const RestAccess &access, const QDateTime &date, const QString &detail) const
{
    const bool isPlausible = reset.isValid() && date.secsTo(reset) < MaxWaitSeconds;
    base::Error error = limitError(allowed, isPlausible ? reset : QDateTime(), date, detail);
    if (!access.hasAccount())
        error.localizedDescription +=
            u' ' + String::localize(u"With an account, entered in the preferences, there are more."_s);
    return error;
}

bool RestQuota::takeOrder(const HttpAnswer &answer)
{
    const std::optional<QJsonObject> object = Json::object(answer.body);
    if (!object || !object->contains(QuotaKey))
        return false;
    if (const auto left = Json::smallInteger(*object, QuotaKey))
        remaining = std::max(*left, 0);
    if (const auto used = Json::smallInteger(*object, u"requests"_s); used && remaining && !allowed)
        allowed = *remaining > 0 ? *used + *remaining : std::optional<int>();
    const QDateTime date = QDateTime::fromString(Json::text(*object, u"reset_time_utc"_s), Qt::ISODateWithMs);
    if (date.isValid())
        reset = date.toUTC();
    return true;
}

void RestQuota::takeUser(const QJsonObject &user)
{
    if (const auto count = Json::smallInteger(user, u"allowed_downloads"_s); count && *count > 0)
        allowed = count;
    if (const auto left = Json::smallInteger(user, u"remaining_downloads"_s))
        remaining = std::max(*left, 0);
}

Result<QUrl> RestQuota::linkFrom(const HttpAnswer &answer, const RestAccess &access,
                                 const QDateTime &date) const
{
    const std::optional<QJsonObject> object = Json::object(answer.body);
    const bool isQuota = object && object->contains(QuotaKey);
    if (answer.status == 406 && isQuota && remaining.value_or(0) <= 0)
        return error(access, date, RestErrors::message(answer));
    if (answer.status == 401 && !access.hasAccount())
        return accountWanted(RestErrors::error(answer));
    if (!answer.isSuccess())
        return RestErrors::error(answer);
    if (!object)
        return badAnswer(u"the answer to an order is no JSON object"_s);
    const QString text = Json::text(*object, u"link"_s);
    const QUrl link(text, QUrl::StrictMode);
    if (text.isEmpty() || !link.isValid())
        return badAnswer(u"an order without a link"_s);
    if (!access.linkHosts().accepts(link))
        return badAnswer(u"a link to a place that is not the service's: "_s + link.host());
    return link;
}
