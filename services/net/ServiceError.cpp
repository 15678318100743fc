#include "ServiceError.h"

#include "Redactor.h"

#include <platform/Bundle.h>

#include <QLocale>

using namespace Qt::StringLiterals;

namespace
{
const QString Domain = u"Service"_s;
constexpr int MaxDetailLength = 500;

QString localized(QLatin1StringView key)
{
    return Bundle::main().localizedString(key);
}

QString subtitleSentence(Kind kind)
{
    switch (kind) {
    case Kind::Offline:
        return localized(
            "There is no connection to the subtitle service. Check your network and search again."_L1);
    case Kind::Timeout:
        return localized("The subtitle service did not answer in time. Try again in a moment."_L1);
    case Kind::Unavailable:
        return localized("The subtitle service is not available right now. Try again in a few minutes."_L1);
    case Kind::BadAnswer:
        return localized(
            "The subtitle service gave an answer that makes no sense. If you are on a network that asks "
            "you to sign in, do that first; otherwise try again later."_L1);
    case Kind::Insecure:
        return localized(
            "No private connection to the subtitle service could be made. Check the date of this "
            "computer, and whether this network can be trusted."_L1);
    case Kind::Proxy:
        return localized("The proxy of this network refused the connection. Check the proxy settings of this "
                         "computer."_L1);
    case Kind::KeyRefused:
        return localized(
            "The subtitle service does not accept this API key. Check it in the preferences."_L1);
    case Kind::LoginRefused:
        return localized(
            "User name or password not accepted (use the user name, not the e-mail address). Correct "
            "them in the preferences."_L1);
    case Kind::LimitReached:
        return localized("The download limit is reached. Try again tomorrow."_L1);
    case Kind::TooManyRequests:
        return localized(
            "The subtitle service gets too many requests from here. Wait a minute, then try again."_L1);
    case Kind::Rejected:
    case Kind::NotFound:
        return localized("The subtitle service does not accept this request. Try other words."_L1);
    case Kind::LinkExpired:
        return localized(
            "The address of this subtitle has expired. Choose it again; that uses one more of your "
            "downloads."_L1);
    case Kind::NotASubtitle:
        return localized("What the service sent is not a subtitle. Choose another one."_L1);
    case Kind::UnknownLanguage:
        return localized(
            "The subtitle service has no subtitles in this language. Choose another language."_L1);
    case Kind::NothingToAsk:
        return localized("Type more of the title: these words are too few to search for."_L1);
    }
    return {};
}

QString filmSentence(Kind kind)
{
    switch (kind) {
    case Kind::Offline:
        return localized("There is no connection to the film database. Check your network."_L1);
    case Kind::Timeout:
        return localized("The film database did not answer in time. Try again in a moment."_L1);
    case Kind::Insecure:
        return localized(
            "No private connection to the film database could be made. Check the date of this computer, "
            "and whether this network can be trusted."_L1);
    case Kind::Proxy:
        return subtitleSentence(kind);
    case Kind::KeyRefused:
    case Kind::LoginRefused:
        return localized("The film database does not accept this key. Check it in the preferences."_L1);
    case Kind::LimitReached:
    case Kind::TooManyRequests:
        return localized(
            "The film database gets too many requests from here. Wait a minute, then try again."_L1);
    case Kind::Unavailable:
        return localized("The film database is not available right now. Try again in a few minutes."_L1);
    case Kind::NotFound:
        return localized("The film database has no poster of this film."_L1);
    case Kind::BadAnswer:
    case Kind::Rejected:
    case Kind::LinkExpired:
    case Kind::NotASubtitle:
    case Kind::UnknownLanguage:
    case Kind::NothingToAsk:
        return localized("The film database gave an answer that makes no sense. Try again later."_L1);
    }
    return {};
}

/// "01:00 (in 3 h 12 min)".
QString timeUntil(const QDateTime &reset, const QDateTime &now)
{
    const qint64 minutes = std::max<qint64>(1, (now.secsTo(reset) + 59) / 60);
    const QLocale locale;
    // The plain locale counts seconds, too.
    const QString format = locale.timeFormat(QLocale::ShortFormat).remove(u":ss"_s);
    const QString clock = locale.toString(reset.toLocalTime().time(), format);
    QString wait = minutes < 60 ? localized("%m min"_L1) : localized("%h h %m min"_L1);
    wait.replace("%h"_L1, QString::number(minutes / 60)).replace("%m"_L1, QString::number(minutes % 60));
    return localized("%1 (in %2)"_L1).replace("%1"_L1, clock).replace("%2"_L1, wait);
}
} // namespace

Error serviceError(Kind kind, ServiceName service, const QString &detail)
{
    const QString sentence = service == ServiceName::Subtitles ? subtitleSentence(kind) : filmSentence(kind);
    return {Domain, static_cast<int>(kind), sentence, redacted(detail).left(MaxDetailLength)};
}

Error limitError(ServiceName service, std::optional<int> allowed, const QDateTime &reset,
                 const QDateTime &now, const QString &detail)
{
    Error error = serviceError(Kind::LimitReached, service, detail);
    const bool counted = allowed && *allowed > 0;
    const bool dated = reset.isValid() && reset > now;
    QString sentence;
    if (counted)
        sentence = localized("Daily limit reached: all %@ downloads used."_L1)
                       .replace("%@"_L1, QLocale().toString(*allowed));
    else if (dated)
        sentence = localized("Daily download limit reached."_L1);
    if (dated)
        sentence += u' ' + localized("New downloads from %@."_L1).replace("%@"_L1, timeUntil(reset, now));
    else if (counted)
        sentence += u' ' + localized("Try again tomorrow."_L1);
    if (!sentence.isEmpty())
        error.localizedDescription = sentence;
    return error;
}

std::optional<Kind> kindOf(const Error &error)
{
    if (error.domain != Domain)
        return std::nullopt;
    return static_cast<Kind>(error.code);
}
