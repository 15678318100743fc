#pragma once
#include "Result.h"
#include <QByteArray>
#include <QString>

class FileSystemCalls;

/// Who may read a written file.
enum class FileAccess
{
    AsBefore, // as the file that is replaced; a new one as the process's mask says
    OwnerOnly
};

/// Replaces the file at `path` whole: the bytes are written and flushed to a temporary file beside it, which
/// takes its place by a rename. Where any step fails, the file stays as it was, nothing is left beside it,
/// and the Error tells why (domain "FileManager", an errno value, a sentence with the reason alone). The
/// folder must exist. A symbolic link is followed, also one to nothing yet. Any thread.
Result<void> writeFile(const QString &path, const QByteArray &bytes,
                       FileAccess access = FileAccess::AsBefore);

/// The calls that writeFile makes instead of the system's, for tests; null for the system's own.
void setCallsOfWriteFile(FileSystemCalls *calls);
