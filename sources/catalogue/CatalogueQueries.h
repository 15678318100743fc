#pragma once
#include <model/Subtitle.h>
#include <QByteArray>
#include <QList>

namespace SQLite
{
class Database;
}

/// A subtitle as one catalogue stores it; the service adds further facts.
struct CatalogueEntry
{
    qint64 id = 0; // the row in its catalogue
    Subtitle subtitle;
    QByteArray digest; // of the content: equal for equal files
};

/// The searches of one open catalogue. They throw SQLite::Exception, which CatalogueDatabase catches.
namespace CatalogueQueries
{
inline constexpr int MaxEntries = 500;

/// The exact matches first, then by downloads.
QList<CatalogueEntry> forVideo(SQLite::Database &database, qint64 size, const QString &hash,
                               const QString &language);
/// The closest titles first, and the subtitles of a title by its year and by downloads.
QList<CatalogueEntry> forText(SQLite::Database &database, const QString &text, const QString &language);
} // namespace CatalogueQueries
