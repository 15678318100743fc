#pragma once
#include <model/MetadataService.h>
#include <net/HttpMessage.h>
#include <net/ServiceError.h>

/// Parses the film database's answers; missing members are tolerated. Plain functions, any thread.
namespace FilmAnswers
{
struct Found
{
    FindResult result;
    std::optional<qint64> showOfEpisode; // to be fetched when nothing else was found
};

/// None when it is not an answer to a find.
std::optional<Found> readFind(const QByteArray &json);
/// The show as the only item of a result; none when it is not a show.
std::optional<FindResult> readShow(const QByteArray &json);

/// The poster's path in an item's handle; empty when there is none or the item is from another service.
QString posterPath(const TmdbItem &item);

/// The Error of an unsuccessful answer.
base::Error errorOf(const HttpAnswer &answer);
/// The film has no picture.
base::Error noPosterError();
} // namespace FilmAnswers

/// The address and sizes of pictures, from the film database's configuration. A plain value.
struct FilmImages
{
    QUrl base = QUrl(QStringLiteral("https://image.tmdb.org/t/p/"));
    QList<int> posterWidths = {92, 154, 185, 342, 500, 780};

    /// None when it is not a configuration.
    static std::optional<FilmImages> read(const QByteArray &json);
    /// The name of the smallest size of at least that many pixels in width; otherwise of the largest known.
    QString posterSize(int pixels) const;
    /// `path` begins with a slash.
    QUrl address(const QString &size, const QString &path) const;
};

/// Whether the end of a picture is present, which decoders do not check. Any thread.
bool isWholePicture(const QByteArray &bytes);
