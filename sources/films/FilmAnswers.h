#pragma once
#include <model/MetadataService.h>
#include <QByteArray>
#include <optional>

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
} // namespace FilmAnswers
