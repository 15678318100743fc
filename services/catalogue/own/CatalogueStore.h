#pragma once
#include <platform/Result.h>
#include <memory>

namespace SQLite
{
class Database;
}

/// A catalogue file that is opened to be written: made when there is none, brought up to date when it is
/// older. Readers go on reading meanwhile and several processes may write in turns, because the file is kept
/// with a write-ahead log. After a power cut or a kill it holds what was committed.
namespace CatalogueStore
{
/// How long one writer waits for another, which holds the file for one batch at a time.
inline constexpr int BusyTimeoutMilliseconds = 30'000;

/// Makes the folders too. Before a file is brought up to date it is checked, and a copy is left beside it as
/// "catalogue.sqlite.version-1".
Result<std::unique_ptr<SQLite::Database>> openForWriting(const QString &path);

/// What the whole file's check finds wrong, its text index included; empty when it is sound.
Result<QStringList> faults(SQLite::Database &database);

Error error(const QString &path, const QString &what);
} // namespace CatalogueStore
