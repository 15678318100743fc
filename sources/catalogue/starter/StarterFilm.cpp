#include "StarterFilm.h"

#include "PosterDrawing.h"

#include <media/MovieHash.h>
#include <model/ImdbNumber.h>
#include <model/ServiceLanguages.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace
{
base::Error faultIn(const QString &file, const QString &fault)
{
    return base::Error{u"Starter"_s, 1, u"%1: %2"_s.arg(file, fault)};
}

Result<QByteArray> contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return faultIn(path, file.errorString());
    return file.readAll();
}

std::optional<int> optionalInt(const QJsonValue &value)
{
    return value.isDouble() ? std::optional(value.toInt()) : std::nullopt;
}

Result<void> readVideo(SubtitleRecord &record, const QJsonValue &video, const QDir &samples)
{
    if (video.isUndefined())
        return {};
    if (video.isObject()) { // not one of the sample videos
        record.videoHash = video.toObject().value("hash"_L1).toString();
        record.videoSize = static_cast<quint64>(video.toObject().value("size"_L1).toInteger());
        return {};
    }
    const QString path = samples.filePath(video.toString());
    const std::optional<VideoHash> hash = movieHash(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
    if (!hash)
        return faultIn(path, u"cannot be hashed"_s);
    record.videoHash = hash->hash;
    record.videoSize = hash->size;
    return {};
}

Result<SubtitleRecord> readSubtitle(const QJsonObject &object, const QDir &folder, const QDir &samples)
{
    const QString file = folder.filePath(object.value("file"_L1).toString());
    SubtitleRecord record;
    record.release = object.value("release"_L1).toString();
    record.language = object.value("language"_L1).toString();
    record.format = QFileInfo(file).suffix();
    record.downloads = object.value("downloads"_L1).toInteger();
    if (object.contains("fps"_L1))
        record.framesPerSecond = object.value("fps"_L1).toDouble();
    record.hearingImpaired = object.value("hearingImpaired"_L1).toBool();
    record.foreignPartsOnly = object.value("foreignPartsOnly"_L1).toBool();
    if (record.release.isEmpty() || ServiceLanguages::twoLetterCode(record.language).isEmpty())
        return faultIn(file, u"needs a release and a language of three letters"_s);
    const Result<QByteArray> content = contentOf(file);
    if (!content)
        return content.error();
    record.content = *content;
    if (const Result<void> video = readVideo(record, object.value("video"_L1), samples); !video)
        return video.error();
    return record;
}

Result<FilmRecord> readFilm(const QJsonObject &object, const QDir &folder)
{
    FilmRecord film;
    for (const auto &title : object.value("titles"_L1).toArray())
        film.titles += title.toString();
    film.isSeries = object.value("isSeries"_L1).toBool();
    film.year = optionalInt(object.value("year"_L1));
    film.season = optionalInt(object.value("season"_L1));
    film.episode = optionalInt(object.value("episode"_L1));
    film.imdbNumber = imdbNumber(object.value("imdb"_L1).toString());
    if (film.titles.isEmpty() || !film.imdbNumber)
        return faultIn(folder.path(), u"needs titles and an id"_s);
    const QString poster = folder.filePath(object.value("poster"_L1).toString(u"poster.svg"_s));
    const Result<QByteArray> drawing = contentOf(poster);
    if (!drawing)
        return drawing.error();
    film.poster = drawnPoster(*drawing);
    if (film.poster.isEmpty())
        return faultIn(poster, u"cannot be drawn"_s);
    return film;
}
} // namespace

Result<StarterFilm> readStarterFilm(const QString &folder, const QString &samples)
{
    const QDir dir(folder);
    const QString description = dir.filePath(u"film.json"_s);
    const Result<QByteArray> text = contentOf(description);
    if (!text)
        return text.error();
    QJsonParseError fault;
    const QJsonObject object = QJsonDocument::fromJson(*text, &fault).object();
    if (fault.error != QJsonParseError::NoError)
        return faultIn(description, fault.errorString());

    const Result<FilmRecord> film = readFilm(object, dir);
    if (!film)
        return film.error();
    StarterFilm result{*film, {}};
    for (const auto &entry : object.value("subtitles"_L1).toArray()) {
        const Result<SubtitleRecord> subtitle = readSubtitle(entry.toObject(), dir, QDir(samples));
        if (!subtitle)
            return subtitle.error();
        result.subtitles += *subtitle;
    }
    return result;
}
