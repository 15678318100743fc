#include "FilmAnswers.h"

#include <base/LocalizedString.h>
#include <net/Json.h>

#include <QJsonArray>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr int MaxItems = 20;
const QString PosterKey = u"poster"_s;

TmdbItem item(const QJsonObject &object)
{
    return {QVariantMap{{PosterKey, Json::text(object, u"poster_path"_s)}}};
}

QList<TmdbItem> items(const QJsonObject &answer, const QString &key)
{
    QList<TmdbItem> result;
    const QJsonArray list = answer[key].toArray();
    for (const QJsonValue value : list) {
        if (value.isObject() && result.size() < MaxItems)
            result += item(value.toObject());
    }
    return result;
}

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

/// The 154 of "w154"; none for "original" and sizes by height.
std::optional<int> widthOf(const QString &size)
{
    static const QRegularExpression width(u"\\Aw(\\d{1,5})\\z"_s);
    const QRegularExpressionMatch match = width.match(size);
    return match.hasMatch() ? std::optional(match.captured(1).toInt()) : std::nullopt;
}
} // namespace

std::optional<FilmAnswers::Found> FilmAnswers::readFind(const QByteArray &json)
{
    const std::optional<QJsonObject> answer = Json::object(json);
    if (!answer || !(*answer)[u"movie_results"_s].isArray() || !(*answer)[u"tv_results"_s].isArray())
        return std::nullopt;
    Found found;
    found.result.movieResults = items(*answer, u"movie_results"_s);
    found.result.personResults = items(*answer, u"person_results"_s);
    found.result.tvResults = items(*answer, u"tv_results"_s);
    const QJsonObject episode = (*answer)[u"tv_episode_results"_s].toArray().first().toObject();
    const std::optional<qint64> show = Json::integer(episode, u"show_id"_s);
    if (found.result.movieResults.isEmpty() && found.result.tvResults.isEmpty() && show && *show > 0)
        found.showOfEpisode = show;
    return found;
}

std::optional<FindResult> FilmAnswers::readShow(const QByteArray &json)
{
    const std::optional<QJsonObject> answer = Json::object(json);
    if (!answer || !Json::integer(*answer, u"id"_s))
        return std::nullopt;
    FindResult result;
    result.tvResults += item(*answer);
    return result;
}

QString FilmAnswers::posterPath(const TmdbItem &item)
{
    // Accepts one file name after a slash, so that the path cannot lead elsewhere.
    static const QRegularExpression plain(u"\\A/[A-Za-z0-9_-]+\\.[A-Za-z]{2,5}\\z"_s);
    const QString path = item.handle.toMap().value(PosterKey).toString();
    return plain.match(path).hasMatch() ? path : QString();
}

base::Error FilmAnswers::errorOf(const HttpAnswer &answer)
{
    const std::optional<QJsonObject> object = Json::object(answer.body.left(16LL * 1024));
    const QString message = object ? Json::text(*object, u"status_message"_s) : QString();
    const bool isOwn = object && Json::integer(*object, u"status_code"_s);
    const bool isPage = answer.body.trimmed().startsWith('<');
    return serviceError(kindOfStatus(answer.status, isOwn, isPage), ServiceName::Films,
                        u"status %1: %2"_s.arg(answer.status).arg(message));
}

base::Error FilmAnswers::noPosterError()
{
    base::Error error = serviceError(ServiceFailure::Rejected, ServiceName::Films, u"no poster"_s);
    error.localizedDescription = String::localize(u"The film database has no poster of this film."_s);
    return error;
}

std::optional<FilmImages> FilmImages::read(const QByteArray &json)
{
    const std::optional<QJsonObject> answer = Json::object(json);
    const QJsonObject images = answer ? (*answer)[u"images"_s].toObject() : QJsonObject();
    const QUrl base(Json::text(images, u"secure_base_url"_s), QUrl::StrictMode);
    if (!base.isValid() || base.host().isEmpty())
        return std::nullopt;
    QList<int> widths;
    const QJsonArray named = images[u"poster_sizes"_s].toArray();
    for (const QJsonValue size : named) {
        if (const std::optional<int> width = widthOf(size.toString()))
            widths += *width;
    }
    std::sort(widths.begin(), widths.end());
    return FilmImages{base, widths.isEmpty() ? FilmImages().posterWidths : widths};
}

QString FilmImages::posterSize(int pixels) const
{
    const auto fitting = std::lower_bound(posterWidths.begin(), posterWidths.end(), pixels);
    return u"w%1"_s.arg(fitting == posterWidths.end() ? posterWidths.last() : *fitting);
}

QUrl FilmImages::address(const QString &size, const QString &path) const
{
    QUrl url = base.adjusted(QUrl::StripTrailingSlash);
    url.setPath(url.path() + u'/' + size + path);
    return url;
}

bool isWholePicture(const QByteArray &bytes)
{
    constexpr qsizetype Tail = 64; // some encoders append a few bytes
    if (bytes.startsWith("\xFF\xD8"))
        return bytes.right(Tail).contains("\xFF\xD9");
    if (bytes.startsWith("\x89PNG"))
        return bytes.right(Tail).contains("IEND");
    return !bytes.isEmpty();
}
