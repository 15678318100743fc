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

/// Opens a catalogue file for writing: creates a missing one and upgrades an older one. A write-ahead log
/// lets readers continue and several processes write in turns. After a power failure or a kill the file holds
/// what was committed.
namespace CatalogueStore
{
/// How long one writer waits for another, which locks the file for one batch at a time.
inline constexpr int BusyTimeoutMilliseconds = 30'000;

/// How long a writer waits for another one, unless it is stopped meanwhile. Outlives the opened file.
struct WaitLimit
{
    std::chrono::milliseconds longest{BusyTimeoutMilliseconds};
    std::atomic<bool> isStopped = false; // any thread
};

/// Also creates the folders. Before an upgrade the file is checked and copied to "catalogue.sqlite.version-1"
/// beside it.
Result<std::unique_ptr<SQLite::Database>> openForWriting(const QString &path,
                                                         const WaitLimits *limits = nullptr);
/// From now on, waits for other writers within `limits`.
void waitForWriters(SQLite::Database &database, const WaitLimits *limits);

/// What the whole file's check finds wrong, its text index included; empty when it is sound.
QStringList faults(SQLite::Database &database);

/// An error for the terminal; the code is a CatalogueFailure.
Error error(const QString &path, const QString &what,
            CatalogueFailure failure = CatalogueFailure::Unwritable);
Error error(const QString &path, const SQLite::Exception &exception);
} // namespace CatalogueStore
