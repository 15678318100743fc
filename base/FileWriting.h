#pragma once
#include "Result.h"
#include <QByteArray>
#include <QString>

class FileSystemCalls;

/// Who may read a written file.
enum class FileAccess
{
    AsBefore,  // as the file that is replaced; a new one as the process's mask says
    OwnerOnly, // where the file system knows modes
    Secret     // the same, and an Error where it does not
};

/// Replaces the file at `path` whole: the bytes are written and flushed to a temporary file beside it, which
/// takes its place by a rename. Where any step fails, the file stays as it was, nothing is left beside it,
/// and the Error tells why (domain "FileManager", an errno value, a sentence with the reason alone). Missing
/// folders of the path are made. A symbolic link is followed, also one to nothing yet, but no folder is made
/// where it leads. Any thread.
Result<void> writeFile(const QString &path, const QByteArray &bytes,
                       FileAccess access = FileAccess::AsBefore);

/// Makes the folder and those above it that are missing; the same Errors. Any thread.
Result<void> makeFolders(const QString &folder);

/// The calls that both make instead of the system's, for tests; null for the system's own.
void setCallsOfWriteFile(FileSystemCalls *calls);
