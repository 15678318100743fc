#pragma once
#include <QString>
#include <memory>

namespace SQLite
{
class Database;
}

/// Opens a catalogue file for reading only, hardened against its content, and checks that it can be read. A
/// file with a write-ahead log needs a writable folder for the shared-memory file; a file without a log in a
/// read-only folder is opened as immutable. Throws SQLite::Exception. Any thread.
std::unique_ptr<SQLite::Database> readableFile(const QString &path, int busyTimeoutMilliseconds);
