#pragma once
#include <QByteArray>
#include <cstddef>

class FileSystemCalls;

/// The steps by which the bytes of a file, and its name, come to the disk. Each gives a negative errno value
/// where it fails. Any thread.

/// Writes all the bytes, however many calls that takes.
int writeAll(FileSystemCalls &calls, int descriptor, const char *bytes, std::size_t size);
/// Success also on file systems that cannot flush.
int flushToDisk(FileSystemCalls &calls, int descriptor);
/// The same for the names in a folder. A folder that may be written but not read cannot be flushed, which is
/// no failure.
int flushFolder(FileSystemCalls &calls, const QByteArray &folder);
