#include "FilmErrors.h"

#include <base/LocalizedString.h>
#include <net/Json.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr int SignInFirst = 511; // sent by a network that requires a sign-in

/// Distinguishes the database's own refusals from those of other servers in between: `isOwn` answers have its
/// status code, and a page is never its answer.
ServiceFailure kindOfStatus(int status, bool isOwn, bool isPage)
{
    if ((status == 401 || status == 403) && !isPage)
        return ServiceFailure::KeyRefused;
    if (status == 404 && isOwn)
        return ServiceFailure::NotFound;
    if (status == SignInFirst)
        return ServiceFailure::BadAnswer;
    if (status == 407)
        return ServiceFailure::Proxy;
    if (status == 429)
        return ServiceFailure::TooManyRequests;
    return status >= 500 ? ServiceFailure::Unavailable : ServiceFailure::BadAnswer;
}
} // namespace

base::Error filmError(const HttpAnswer &answer)
{
    const std::optional<QJsonObject> object = Json::object(answer.body.left(16LL * 1024));
    const QString message = object ? Json::text(*object, u"status_message"_s) : QString();
    const bool isOwn = object && Json::integer(*object, u"status_code"_s);
    const bool isPage = answer.body.trimmed().startsWith('<');
    return serviceError(kindOfStatus(answer.status, isOwn, isPage), ServiceName::Films,
                        u"status %1: %2"_s.arg(answer.status).arg(message));
}

base::Error noPosterError()
{
    base::Error error = serviceError(ServiceFailure::Rejected, ServiceName::Films, u"no poster"_s);
    error.localizedDescription = String::localize(u"The film database has no poster of this film."_s);
    return error;
}
