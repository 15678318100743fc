#include "RestErrors.h"

#include "RestPage.h"

#include <net/Json.h>
#include <net/Redactor.h>

#include <QJsonArray>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MaxMessageLength = 200;
constexpr qsizetype MaxBodyLookedAt = 16LL * 1024;

QString fromJson(const QJsonObject &object)
{
    for (const QString &key : {u"message"_s, u"error"_s}) {
        const QString text = Json::text(object, key);
        if (!text.isEmpty())
            return text;
    }
    return object[u"errors"_s].toArray().first().toString();
}

QString fromPage(const QString &page)
{
    static const QRegularExpression title(u"<title[^>]*>([^<]*)</title>"_s,
                                          QRegularExpression::CaseInsensitiveOption);
    return title.match(page).captured(1);
}

ServiceFailure kindOfStatus(int status)
{
    switch (status) {
    case 401:
        return ServiceFailure::LoginRefused;
    case 403:
        return ServiceFailure::KeyRefused;
    case 407:
        return ServiceFailure::Proxy;
    case 400:
    case 404:
    case 406:
    case 413:
    case 414: // the words are too long for an address
    case 422:
    case 431:
        return ServiceFailure::Rejected;
    case 408:
        return ServiceFailure::Timeout;
    case 410:
        return ServiceFailure::LinkExpired;
    case 429:
        return ServiceFailure::TooManyRequests;
    case 511: // sent by a network that requires a sign-in
        return ServiceFailure::BadAnswer;
    default:
        return status >= 500 ? ServiceFailure::Unavailable : ServiceFailure::BadAnswer;
    }
}
} // namespace

QString RestErrors::message(const HttpAnswer &answer)
{
    QString text;
    const QByteArray body = answer.body.left(MaxBodyLookedAt);
    if (const auto object = Json::object(body))
        text = fromJson(*object);
    else if (body.trimmed().startsWith('<'))
        text = fromPage(QString::fromUtf8(body));
    else
        text = QString::fromUtf8(body);
    for (const char *header : {"X-Reason", "X-OpenSubtitles-Message"}) {
        if (text.trimmed().isEmpty())
            text = QString::fromUtf8(answer.header(header));
    }
    return plainLine(redacted(text), MaxMessageLength);
}

base::Error RestErrors::linkError(const HttpAnswer &answer)
{
    if (!isLinkRefused(answer))
        return error(answer);
    return serviceError(ServiceFailure::LinkExpired, ServiceName::Subtitles,
                        u"status %1: %2"_s.arg(answer.status).arg(message(answer)));
}

bool RestErrors::isLinkRefused(const HttpAnswer &answer)
{
    return answer.status == 401 || answer.status == 403 || answer.status == 404 || answer.status == 410;
}

bool RestErrors::isTokenRefused(const HttpAnswer &answer)
{
    if (answer.status == 401)
        return true;
    return (answer.status == 406 || answer.status == 500) &&
           message(answer).contains("invalid token"_L1, Qt::CaseInsensitive);
}

base::Error RestErrors::error(const HttpAnswer &answer)
{
    const QString words = message(answer);
    ServiceFailure kind = kindOfStatus(answer.status);
    if (words.contains("query is too short"_L1, Qt::CaseInsensitive))
        kind = ServiceFailure::NothingToAsk;
    base::Error error =
        serviceError(kind, ServiceName::Subtitles, u"status %1: %2"_s.arg(answer.status).arg(words));
    // The general sentence would not say what was wrong with the request.
    if (kind == ServiceFailure::Rejected && !words.isEmpty())
        error.localizedDescription += u" (“"_s + words + u"”)"_s;
    return error;
}
