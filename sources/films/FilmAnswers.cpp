#include "FilmAnswers.h"

#include <net/Json.h>

#include <QJsonArray>
#include <QRegularExpression>

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
