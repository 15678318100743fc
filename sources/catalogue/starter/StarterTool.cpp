#include <base/Bundle.h>
#include <media/MovieHash.h>
#include <model/ImdbNumber.h>
#include <model/LanguageCodes.h>
#include <sources/catalogue/CatalogueRows.h>
#include <sources/catalogue/CatalogueSchema.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdlib>
#include <iostream>

using namespace Qt::StringLiterals;

namespace
{
[[noreturn]] void fail(const QString &file, const QString &fault)
{
    std::cerr << "plovendix-starter: " << file.toStdString() << ": " << fault.toStdString() << '\n';
    std::exit(1);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(path, file.errorString());
    return file.readAll();
}

std::optional<int> optionalInt(const QJsonValue &value)
{
    return value.isDouble() ? std::optional(value.toInt()) : std::nullopt;
}

/// Renders an SVG drawing as an encoded picture at three times its displayed size. Drawings contain no text,
/// so that fonts of the building machine do not matter.
QByteArray drawnPoster(const QString &path)
{
    constexpr QSize PosterPixels(480, 720);
    QSvgRenderer renderer(contentOf(path));
    QImage image(PosterPixels, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();

    QByteArray encoded;
    QBuffer buffer(&encoded);
    if (!renderer.isValid() || !image.save(&buffer, "PNG"))
        fail(path, u"cannot be drawn"_s);
    return encoded;
}

void readVideo(SubtitleRecord &record, const QJsonValue &video, const QDir &samples)
{
    if (video.isUndefined())
        return;
    if (video.isObject()) { // not one of the sample videos
        record.videoHash = video.toObject().value("hash"_L1).toString();
        record.videoSize = static_cast<quint64>(video.toObject().value("size"_L1).toInteger());
        return;
    }
    const QString path = samples.filePath(video.toString());
    const std::optional<VideoHash> hash = movieHash(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
    if (!hash)
        fail(path, u"cannot be hashed"_s);
    record.videoHash = hash->hash;
    record.videoSize = hash->size;
}

SubtitleRecord readSubtitle(const QJsonObject &object, const QDir &folder, const QDir &samples)
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
    if (record.release.isEmpty() || LanguageCodes::shared().twoLetterCode(record.language).isEmpty())
        fail(file, u"needs a release and a language of three letters"_s);
    record.content = StoredContent::plain(contentOf(file));
    readVideo(record, object.value("video"_L1), samples);
    return record;
}

FilmRecord readFilm(const QJsonObject &object, const QDir &folder)
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
        fail(folder.path(), u"needs titles and an id"_s);
    film.poster = drawnPoster(folder.filePath(object.value("poster"_L1).toString(u"poster.svg"_s)));
    return film;
}

/// Adds a film from its folder: "film.json", the subtitle files it names, and the picture "poster.svg" (or
/// the one named by "poster", since episodes share their series' picture).
void addFilm(CatalogueRows &rows, const QDir &folder, const QDir &samples)
{
    const QString description = folder.filePath(u"film.json"_s);
    QJsonParseError fault;
    const QJsonObject object = QJsonDocument::fromJson(contentOf(description), &fault).object();
    if (fault.error != QJsonParseError::NoError)
        fail(description, fault.errorString());
    const qint64 film = rows.addFilm(readFilm(object, folder));
    for (const auto &entry : object.value("subtitles"_L1).toArray())
        rows.addSubtitle(film, readSubtitle(entry.toObject(), folder, samples));
}

void write(const QString &path, const QDir &sources, const QDir &samples)
{
    SQLite::Database database(QFile::encodeName(path).toStdString(),
                              SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    SQLite::Transaction transaction(database);
    CatalogueSchema::create(database);
    CatalogueRows rows(database);
    for (const QString &folder : sources.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
        addFilm(rows, QDir(sources.filePath(folder)), samples);
    database.exec("INSERT INTO title_words(title_words) VALUES('optimize')");
    transaction.commit();
}
} // namespace

/// plovendix-starter SOURCES SAMPLES TARGET: builds the catalogue that ships with the program. SOURCES lies
/// in the folder of the resources, whose table of language codes is read; SAMPLES is the folder of the videos
/// that entries name. Writes a temporary file and renames it, so that a failed build leaves no partial
/// catalogue.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 4) {
        std::cerr << "usage: plovendix-starter SOURCES SAMPLES TARGET\n";
        return 2;
    }
    Bundle::setMainFolder(QFileInfo(arguments[1]).absolutePath());
    const QString &target = arguments[3];
    const QString draft = target + ".new"_L1;
    QFile::remove(draft);
    try {
        write(draft, QDir(arguments[1]), QDir(arguments[2]));
    } catch (const SQLite::Exception &exception) {
        fail(draft, QString::fromUtf8(exception.what()));
    }
    QFile::remove(target);
    if (!QFile::rename(draft, target))
        fail(target, u"cannot be written"_s);
    return 0;
}
