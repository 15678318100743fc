#include "Hardening.h"

#include "CatalogueDatabase.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace
{
struct Limit
{
    int category;
    int most;
};

/// Well above the needs of the program's tables and searches, and far below SQLite's own limits.
constexpr Limit Limits[] = {
    {SQLITE_LIMIT_LENGTH, 2 * CatalogueDatabase::MaxSubtitleBytes},
    {SQLITE_LIMIT_SQL_LENGTH, 100'000},
    {SQLITE_LIMIT_COLUMN, 100},
    {SQLITE_LIMIT_EXPR_DEPTH, 100},
    {SQLITE_LIMIT_COMPOUND_SELECT, 5},
    {SQLITE_LIMIT_VDBE_OP, 25'000},
    {SQLITE_LIMIT_FUNCTION_ARG, 8},
    {SQLITE_LIMIT_ATTACHED, 0},
    {SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 100},
    {SQLITE_LIMIT_VARIABLE_NUMBER, 100},
};

std::unique_ptr<SQLite::Database> opened(const std::string &name, int flags, int busyTimeout)
{
    auto database = std::make_unique<SQLite::Database>(name, SQLite::OPEN_READONLY | flags, busyTimeout);
    harden(*database);
    database->execAndGet("PRAGMA schema_version"); // the first statement that reads the file
    return database;
}

/// A log with content is part of the database: without it the file may be inconsistent.
bool hasLog(const QString &path)
{
    return QFileInfo(path + u"-wal"_s).size() > 0;
}

/// Whether SQLite could not make the shared-memory file.
bool isForWantOfAPlace(const SQLite::Exception &exception)
{
    return exception.getErrorCode() == SQLITE_CANTOPEN || exception.getErrorCode() == SQLITE_READONLY;
}

/// In a URI the first part of a relative path would be taken as a host.
std::string unchangingAddress(const QString &path)
{
    const QByteArray name = QFile::encodeName(QFileInfo(path).absoluteFilePath());
    return "file://" + name.toPercentEncoding("/").toStdString() + "?immutable=1";
}
} // namespace

void distrust(SQLite::Database &database)
{
    sqlite3 *handle = database.getHandle();
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
}

void harden(SQLite::Database &database)
{
    distrust(database);
    for (const Limit &limit : Limits)
        sqlite3_limit(database.getHandle(), limit.category, limit.most);
    database.exec("PRAGMA cell_size_check = ON");
    database.exec("PRAGMA query_only = ON");
}

std::unique_ptr<SQLite::Database> openForReading(const QString &path, int busyTimeoutMilliseconds)
{
    try {
        return opened(QFile::encodeName(path).toStdString(), 0, busyTimeoutMilliseconds);
    } catch (const SQLite::Exception &exception) {
        if (!isForWantOfAPlace(exception) || hasLog(path) || !QFileInfo(path).isReadable())
            throw;
    }
    return opened(unchangingAddress(path), SQLite::OPEN_URI, busyTimeoutMilliseconds);
}
