#pragma once
#include <model/MetadataService.h>
#include <QByteArray>
#include <optional>

/// Reads the film database's answers, whatever is missing in them. Plain functions, any thread.
namespace FilmAnswers
{
struct Found
{
    FindResult result;
    std::optional<qint64> showOfEpisode; // to be asked for where nothing else was found
};

/// Nothing for what is no answer to a find.
std::optional<Found> readFind(const QByteArray &json);
/// The show as the one item of a result; nothing for what is no show.
std::optional<FindResult> readShow(const QByteArray &json);

/// The poster's path in an item's handle; empty when there is none, or the item is somebody else's.
QString posterPath(const TmdbItem &item);
} // namespace FilmAnswers
