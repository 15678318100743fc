#pragma once
#include <QByteArray>
#include <cstddef>

class FileSystemCalls;

/// The steps that bring the bytes of a file and its name to the disk. Each returns a negative errno value on
/// failure. Any thread.

/// Writes all bytes, with as many calls as needed.
int writeAll(FileSystemCalls &calls, int descriptor, const char *bytes, std::size_t size);
/// Flushes a file. Also succeeds on file systems that cannot flush.
int flushToDisk(FileSystemCalls &calls, int descriptor);
/// Flushes the names in a folder. Succeeds for a folder that is writable but not readable, because it cannot
/// be flushed.
int flushFolder(FileSystemCalls &calls, const QByteArray &folder);
