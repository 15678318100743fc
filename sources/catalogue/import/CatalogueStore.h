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

/// A catalogue file that is opened to be written, and made when there is none. Readers go on reading
/// meanwhile and several processes may write in turns, because the file is kept with a write-ahead log. After
/// a power cut or a kill it holds what was committed.
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

/// Makes the folders too. A file of another version is refused.
Result<std::unique_ptr<SQLite::Database>> openForWriting(const QString &path,
                                                         const WaitLimits *limits = nullptr);
/// Waits for other writers from now on, as long as limits lasts.
void waitForWriters(SQLite::Database &database, const WaitLimits *limits);

/// What the whole file's check finds wrong, its text index included; empty when it is sound.
QStringList faults(SQLite::Database &database);

/// For the terminal; the code is a CatalogueFailure.
base::Error error(const QString &path, const QString &what,
                  CatalogueFailure failure = CatalogueFailure::Unwritable);
base::Error error(const QString &path, const SQLite::Exception &exception);
} // namespace CatalogueStore
