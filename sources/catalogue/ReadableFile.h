#pragma once
#include <QString>
#include <memory>

namespace SQLite
{
class Database;
}

/// Opens a catalogue file for reading only, hardened against what it may hold, and makes sure that it can be
/// read. A file with a write-ahead log needs a place for the readers' notes beside it; one that was finished
/// and then put where nothing may be written is read without. Throws SQLite::Exception. Any thread.
std::unique_ptr<SQLite::Database> readableFile(const QString &path, int busyTimeoutMilliseconds);
