#pragma once
#include "Result.h"
#include <QByteArray>

class FileSystemCalls;

/// What happens to an item that exists at the destination of a move.
enum class Existing
{
    Refused,
    Replaced // a file is replaced, a folder is moved to the trash
};

/// Moves one item in the safest way that the file systems support: a rename; if that cannot refuse to
/// replace, a second link and removal of the first; between file systems, for files only, a flushed copy
/// beside the destination, published in one of these ways. If the process dies, the source is whole, and the
/// destination is unchanged or holds the whole file. Any thread.
Result<void> moveFile(FileSystemCalls &calls, const QByteArray &source, const QByteArray &destination,
                      Existing existing);
