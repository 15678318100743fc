#pragma once
#include <QByteArray>
#include <cstddef>
#include <sys/types.h>

class FileSystemCalls;

/// The steps by which a file comes whole to its place: a hidden temporary file, all its bytes, both on the
/// disk. Each gives a negative errno value where it fails. Any thread.

/// Opens a new file ".plovendix-….part" in the folder for writing, and gives its descriptor and its name.
int openTemporary(FileSystemCalls &calls, const QByteArray &folder, mode_t mode, QByteArray &name);
/// Writes all the bytes, however many calls that takes.
int writeAll(FileSystemCalls &calls, int descriptor, const char *bytes, std::size_t size);
/// Success also on file systems that cannot flush.
int flushToDisk(FileSystemCalls &calls, int descriptor);
/// The same for the names in a folder. A folder that may be written but not read cannot be flushed, which is
/// no failure.
int flushFolder(FileSystemCalls &calls, const QByteArray &folder);
