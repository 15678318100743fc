#include "RestOrder.h"

#include "RestErrors.h"

#include <base/LocalizedString.h>
#include <net/Json.h>

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto QuotaKey = "remaining"_L1;

/// Without stored credentials: account required.
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

RestSession::Request RestOrder::request(qint64 fileNumber)
{
    const QJsonObject order{{u"file_id"_s, fileNumber}, {u"sub_format"_s, u"srt"_s}};
    return {
        HttpRequest::Method::Post, u"/download"_s, {}, QJsonDocument(order).toJson(QJsonDocument::Compact)};
}

std::optional<RestQuota> RestOrder::quotaAfter(const RestQuota &quota, const HttpAnswer &answer)
{
    const std::optional<QJsonObject> object = Json::object(answer.body);
    if (!object || !object->contains(QuotaKey))
        return std::nullopt;
    RestQuota after = quota;
    after.takeOrder(*object);
    return after;
}

Result<QUrl> RestOrder::linkFrom(const RestSession &session, const HttpAnswer &answer, const QDateTime &date)
{
    const std::optional<QJsonObject> object = Json::object(answer.body);
    const bool isQuota = object && object->contains(QuotaKey);
    if (answer.status == 406 && isQuota && session.quota().remaining.value_or(0) <= 0)
        return limitReached(session, date, RestErrors::message(answer));
    if (answer.status == 401 && !session.access().hasAccount())
        return accountWanted(RestErrors::error(answer));
    if (!answer.isSuccess())
        return RestErrors::error(answer);
    if (!object)
        return badAnswer(u"the answer to an order is no JSON object"_s);
    const QString text = Json::text(*object, u"link"_s);
    const QUrl link(text, QUrl::StrictMode);
    if (text.isEmpty() || !link.isValid())
        return badAnswer(u"an order without a link"_s);
    if (!session.access().linkHosts().accepts(link))
        return badAnswer(u"a link to a place that is not the service's: "_s + link.host());
    return link;
}

base::Error RestOrder::limitReached(const RestSession &session, const QDateTime &date, const QString &detail)
{
    base::Error error = session.quota().error(date, detail);
    if (!session.access().hasAccount())
        error.localizedDescription +=
            u' ' + String::localize(u"With an account, entered in the preferences, there are more."_s);
    return error;
}
