#pragma once
#include <base/Result.h>
#include <sources/catalogue/CatalogueErrors.h>
#include <atomic>
#include <chrono>
#include <memory>

namespace SQLite
{
class Database;
class Exception;
} // namespace SQLite

/// Opens a catalogue file for writing, and makes it when there is none. The file is kept with a write-ahead
/// log: readers go on reading meanwhile, several processes may write in turns, and after a power cut or a
/// kill it holds what was committed.
namespace CatalogueStore
{
/// How long one writer waits for another, which holds the file for one batch at a time.
inline constexpr int BusyTimeoutMilliseconds = 30'000;

/// How long a writer waits for another one, unless it is stopped meanwhile. Outlives the opened file.
struct WaitLimits
{
    std::chrono::milliseconds longest{BusyTimeoutMilliseconds};
    std::atomic<bool> isStopped = false; // any thread
};

/// Makes the folders too. A file of another program or version is refused.
Result<std::unique_ptr<SQLite::Database>> openForWriting(const QString &path, WaitLimits *limits = nullptr);
/// Sets how long the connection waits for other writers from now on.
void waitForWriters(SQLite::Database &database, WaitLimits *limits);

/// The error of an opened file that another program or version made; none for ours. Throws SQLite::Exception.
std::optional<base::Error> refusal(SQLite::Database &database, const QString &path);

/// For the terminal; the code is a CatalogueFailure.
base::Error error(const QString &path, const QString &what,
                  CatalogueFailure failure = CatalogueFailure::Unwritable);
base::Error error(const QString &path, const SQLite::Exception &exception);
} // namespace CatalogueStore
