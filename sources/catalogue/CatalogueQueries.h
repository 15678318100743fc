#pragma once
#include "CatalogueEntry.h"

#include <QList>

namespace SQLite
{
class Database;
}

/// The searches of one open catalogue. They throw SQLite::Exception, which CatalogueDatabase catches.
namespace CatalogueQueries
{
inline constexpr int MaxEntries = 500;

QList<CatalogueEntry> forVideo(SQLite::Database &database, qint64 size, const QString &hash,
                               const QString &language);
QList<CatalogueEntry> forText(SQLite::Database &database, const QString &text, const QString &language);
} // namespace CatalogueQueries
