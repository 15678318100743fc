#include "CatalogueStore.h"

#include <sources/catalogue/CatalogueSchema.h>
#include <sources/catalogue/Hardening.h>

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace
{
using CatalogueStore::WaitLimits;

constexpr int PauseMilliseconds = 20;

int isWorthWaiting(void *place, int tries)
{
    const WaitLimits &limits = *static_cast<const WaitLimits *>(place);
    const std::chrono::milliseconds waited(tries * PauseMilliseconds);
    if (limits.isStopped || waited >= limits.longest)
        return 0;
    sqlite3_sleep(PauseMilliseconds);
    return 1;
}

std::string nameOf(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

/// Removes the drafts that killed processes left.
void removeOldDrafts(const QString &path)
{
    constexpr qint64 AbandonedAfterSeconds = 3600;
    const QFileInfo file(path);
    const QDateTime limit = QDateTime::currentDateTime().addSecs(-AbandonedAfterSeconds);
    for (const QFileInfo &draft : file.dir().entryInfoList({u"*.draft*"_s}, QDir::Files)) {
        if (draft.fileName().startsWith(file.fileName() + u'.') && draft.lastModified() < limit)
            QFile::remove(draft.filePath());
    }
}

/// Makes the file as a draft and links it to its name, so that no reader meets half of a file, and of two
/// processes only the first one's file stays.
void make(const QString &path)
{
    const QString draft = u"%1.%2.draft"_s.arg(path).arg(QCoreApplication::applicationPid());
    QFile::remove(draft);
    {
        SQLite::Database database(nameOf(draft), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        database.exec("PRAGMA journal_mode = WAL");
        SQLite::Transaction transaction(database);
        CatalogueSchema::create(database);
        transaction.commit();
    }
    std::error_code failure; // another process was first, or the open that follows reports the error
    std::filesystem::create_hard_link(nameOf(draft), nameOf(path), failure);
    if (failure && !QFileInfo::exists(path))
        QFile::rename(draft, path); // a file system without links
    QFile::remove(draft);
}

/// A commit is on the disk before the next begins; the log does not stay large after a large import.
void prepare(SQLite::Database &database)
{
    database.exec("PRAGMA journal_mode = WAL");
    database.exec("PRAGMA synchronous = FULL");
    database.exec("PRAGMA journal_size_limit = 67108864");
    database.exec("PRAGMA cache_size = -65536");
}

CatalogueFailure failureOf(const SQLite::Exception &exception)
{
    switch (exception.getErrorCode()) {
    case SQLITE_FULL:
        return CatalogueFailure::DiskFull;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return CatalogueFailure::Busy;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR: // a table is missing
        return CatalogueFailure::Damaged;
    default:
        return CatalogueFailure::Unwritable;
    }
}
} // namespace

base::Error CatalogueStore::error(const QString &path, const QString &what, CatalogueFailure failure)
{
    return base::Error{u"Catalogue"_s, static_cast<int>(failure), u"%1: %2"_s.arg(path, what)};
}

base::Error CatalogueStore::error(const QString &path, const SQLite::Exception &exception)
{
    return error(path, QString::fromUtf8(exception.what()), failureOf(exception));
}

std::optional<base::Error> CatalogueStore::refusal(SQLite::Database &database, const QString &path)
{
    using enum CatalogueSchema::Owner;
    const CatalogueSchema::Owner owner = CatalogueSchema::ownerOf(database);
    if (owner == OtherProgram)
        return error(path, u"is not a subtitle catalogue"_s, CatalogueFailure::Damaged);
    if (owner == OtherVersion)
        return error(path, u"was made by another version of Plovendix"_s, CatalogueFailure::OtherVersion);
    return std::nullopt;
}

void CatalogueStore::waitForWriters(SQLite::Database &database, WaitLimits *limits)
{
    if (limits)
        sqlite3_busy_handler(database.getHandle(), isWorthWaiting, limits);
    else
        database.setBusyTimeout(BusyTimeoutMilliseconds);
}

Result<std::unique_ptr<SQLite::Database>> CatalogueStore::openForWriting(const QString &path,
                                                                         WaitLimits *limits)
{
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile())
        return error(path, u"is not a file"_s);
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return error(path, u"its folder cannot be made"_s);
    removeOldDrafts(path);
    try {
        if (!QFileInfo::exists(path))
            make(path);
        auto database = std::make_unique<SQLite::Database>(nameOf(path), SQLite::OPEN_READWRITE);
        distrust(*database);
        waitForWriters(*database, limits);
        if (const std::optional<base::Error> refused = refusal(*database, path))
            return *refused;
        prepare(*database);
        return database;
    } catch (const SQLite::Exception &exception) {
        return error(path, exception);
    }
}
