#include "ServiceError.h"

#include "Redactor.h"

#include <base/LocalizedString.h>

#include <QLocale>

using namespace Qt::StringLiterals;

namespace
{
const QString Domain = u"Service"_s;
constexpr int MaxDetailLength = 500;

QString subtitleSentence(ServiceFailure kind)
{
    switch (kind) {
    case ServiceFailure::Offline:
        return String::localize(
            u"There is no connection to the subtitle service. Check your network and search again."_s);
    case ServiceFailure::Timeout:
        return String::localize(u"The subtitle service did not answer in time. Try again in a moment."_s);
    case ServiceFailure::Unavailable:
        return String::localize(
            u"The subtitle service is not available right now. Try again in a few minutes."_s);
    case ServiceFailure::BadAnswer:
        return String::localize(
            u"The subtitle service gave an answer that makes no sense. If you are on a network that asks "
            "you to sign in, do that first; otherwise try again later."_s);
    case ServiceFailure::Insecure:
        return String::localize(
            u"No private connection to the subtitle service could be made. Check the date of this "
            "computer, and whether this network can be trusted."_s);
    case ServiceFailure::KeyRefused:
        return String::localize(
            u"The subtitle service does not accept this API key. Check it in the preferences."_s);
    case ServiceFailure::LoginRefused:
        return String::localize(
            u"User name or password not accepted (use the user name, not the e-mail address). Correct "
            "them in the preferences."_s);
    case ServiceFailure::LimitReached:
        return String::localize(u"The download limit is reached. Try again tomorrow."_s);
    case ServiceFailure::TooManyRequests:
        return String::localize(
            u"The subtitle service gets too many requests from here. Wait a minute, then try again."_s);
    case ServiceFailure::Rejected:
    case ServiceFailure::NotFound:
        return String::localize(u"The subtitle service does not accept this request. Try other words."_s);
    case ServiceFailure::LinkExpired:
        return String::localize(
            u"The address of this subtitle has expired. Choose it again; that uses one more of your "
            "downloads."_s);
    case ServiceFailure::NotASubtitle:
        return String::localize(u"What the service sent is not a subtitle. Choose another one."_s);
    case ServiceFailure::UnknownLanguage:
        return String::localize(
            u"The subtitle service has no subtitles in this language. Choose another language."_s);
    case ServiceFailure::NothingToAsk:
        return String::localize(u"Type more of the title: these words are too few to search for."_s);
    default:
        return commonSentence(kind);
    }
}

QString filmSentence(ServiceFailure kind)
{
    switch (kind) {
    case ServiceFailure::Offline:
        return String::localize(u"There is no connection to the film database. Check your network."_s);
    case ServiceFailure::Timeout:
        return String::localize(u"The film database did not answer in time. Try again in a moment."_s);
    case ServiceFailure::Insecure:
        return String::localize(
            u"No private connection to the film database could be made. Check the date of this computer, "
            "and whether this network can be trusted."_s);
    case ServiceFailure::Proxy:
    case ServiceFailure::ForbiddenAddress:
        return commonSentence(kind);
    case ServiceFailure::KeyRefused:
    case ServiceFailure::LoginRefused:
        return String::localize(
            u"The film database does not accept this key. Check it in the preferences."_s);
    case ServiceFailure::LimitReached:
    case ServiceFailure::TooManyRequests:
        return String::localize(
            u"The film database gets too many requests from here. Wait a minute, then try again."_s);
    case ServiceFailure::Unavailable:
        return String::localize(
            u"The film database is not available right now. Try again in a few minutes."_s);
    case ServiceFailure::NotFound:
        return String::localize(u"The film database has no poster of this film."_s);
    default:
        return String::localize(u"The film database gave an answer that makes no sense. Try again later."_s);
    }
}

/// Formats a time like "01:00 (in 3 h 12 min)".
QString timeUntil(const QDateTime &reset, const QDateTime &now)
{
    const qint64 minutes = std::max<qint64>(1, (now.secsTo(reset) + 59) / 60);
    const QLocale locale;
    // The C locale's short format contains seconds.
    const QString format = locale.timeFormat(QLocale::ShortFormat).remove(u":ss"_s);
    const QString clock = locale.toString(reset.toLocalTime().time(), format);
    const QString rest = QString::number(minutes % 60);
    const QString wait = minutes < 60 ? String::fill(String::localize(u"%@ min"_s), {rest})
                                      : String::fill(String::localize(u"%1$@ h %2$@ min"_s),
                                                     {QString::number(minutes / 60), rest});
    return String::fill(String::localize(u"%1$@ (in %2$@)"_s), {clock, wait});
}

QString pauseSentence(bool isTooFast, bool isSubtitles)
{
    if (isTooFast && isSubtitles)
        return String::localize(
            u"The subtitle service gets too many requests from here. Try again from %@."_s);
    if (isTooFast)
        return String::localize(u"The film database gets too many requests from here. Try again from %@."_s);
    if (isSubtitles)
        return String::localize(u"The subtitle service is not available right now. Try again from %@."_s);
    return String::localize(u"The film database is not available right now. Try again from %@."_s);
}
} // namespace

QString commonSentence(ServiceFailure kind)
{
    if (kind == ServiceFailure::Proxy)
        return String::localize(
            u"The proxy of this network refused the connection. Check the proxy settings of this "
            "computer."_s);
    if (kind == ServiceFailure::ForbiddenAddress)
        return String::localize(
            u"The service cannot be asked at the address in the settings: it must begin with https."_s);
    return {};
}

base::Error serviceError(ServiceFailure kind, ServiceName service, const QString &detail)
{
    const QString sentence = service == ServiceName::Subtitles ? subtitleSentence(kind) : filmSentence(kind);
    return {Domain, static_cast<int>(kind), sentence, redacted(detail).left(MaxDetailLength)};
}

base::Error serviceError(const TransportFault &fault, ServiceName service)
{
    base::Error error = serviceError(fault.kind, service, fault.detail);
    if (fault.pause)
        error.localizedDescription = String::fill(
            pauseSentence(fault.kind == ServiceFailure::TooManyRequests, service == ServiceName::Subtitles),
            {timeUntil(fault.pause->end, fault.pause->begin)});
    return error;
}

base::Error limitError(std::optional<int> allowed, const QDateTime &reset, const QDateTime &now,
                       const QString &detail)
{
    base::Error error = serviceError(ServiceFailure::LimitReached, ServiceName::Subtitles, detail);
    const bool counted = allowed && *allowed > 0;
    const bool dated = reset.isValid() && reset > now;
    QString sentence;
    if (counted)
        sentence = String::fill(String::localize(u"Daily limit reached: all %@ downloads used."_s),
                                {QLocale().toString(*allowed)});
    else if (dated)
        sentence = String::localize(u"Daily download limit reached."_s);
    if (dated)
        sentence +=
            u' ' + String::fill(String::localize(u"New downloads from %@."_s), {timeUntil(reset, now)});
    else if (counted)
        sentence += u' ' + String::localize(u"Try again tomorrow."_s);
    if (!sentence.isEmpty())
        error.localizedDescription = sentence;
    return error;
}

std::optional<ServiceFailure> kindOf(const base::Error &error)
{
    if (error.domain != Domain)
        return std::nullopt;
    return static_cast<ServiceFailure>(error.code);
}
