#pragma once
#include <QString>
#include <memory>

namespace SQLite
{
class Database;
}

/// Disables what a forged file could run by itself: triggers, views and the functions in its table
/// definitions. Call before the first read.
void distrust(SQLite::Database &database);

/// Limits what a forged file could do to its reader, sizes included. Call before the first read. Throws
/// SQLite::Exception.
void harden(SQLite::Database &database);

/// Opens a catalogue file for reading only, hardened against its content, and checks that it can be read. A
/// file with a write-ahead log needs a writable folder for the shared-memory file; a file without a log in a
/// read-only folder is opened as immutable. Throws SQLite::Exception. Any thread.
std::unique_ptr<SQLite::Database> openForReading(const QString &path, int busyTimeoutMilliseconds);
