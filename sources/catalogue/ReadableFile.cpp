#include "ReadableFile.h"

#include "Hardening.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <QFile>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace
{
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

std::unique_ptr<SQLite::Database> readableFile(const QString &path, int busyTimeoutMilliseconds)
{
    try {
        return opened(QFile::encodeName(path).toStdString(), 0, busyTimeoutMilliseconds);
    } catch (const SQLite::Exception &exception) {
        if (!isForWantOfAPlace(exception) || hasLog(path) || !QFileInfo(path).isReadable())
            throw;
    }
    return opened(unchangingAddress(path), SQLite::OPEN_URI, busyTimeoutMilliseconds);
}
