#include "FilmErrors.h"

#include <platform/Bundle.h>
#include <services/net/Json.h>

using namespace Qt::StringLiterals;

namespace
{
Kind kindOfStatus(int status)
{
    if (status == 401 || status == 403)
        return Kind::KeyRefused;
    if (status == 407)
        return Kind::Proxy;
    if (status == 429)
        return Kind::TooManyRequests;
    return status >= 500 ? Kind::Unavailable : Kind::BadAnswer;
}
} // namespace

Error filmError(const HttpAnswer &answer)
{
    const std::optional<QJsonObject> object = Json::object(answer.body.left(16 * 1024));
    const QString message = object ? Json::text(*object, u"status_message"_s) : QString();
    return serviceError(kindOfStatus(answer.status), ServiceName::Films,
                        u"status %1: %2"_s.arg(answer.status).arg(message));
}

Error noPosterError()
{
    Error error = serviceError(Kind::Rejected, ServiceName::Films, u"no poster"_s);
    error.localizedDescription =
        Bundle::main().localizedString(u"The film database has no poster of this film."_s);
    return error;
}
