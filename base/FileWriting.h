#pragma once
#include "Result.h"
#include <QByteArray>
#include <QString>
#include <optional>

class FileSystemCalls;

/// Who may read the written file.
enum class FileAccess
{
    AsBefore,  // the mode of the replaced file; the process's mask decides for a new one
    OwnerOnly, // on file systems with modes
    Secret     // the same, and an Error on file systems without modes
};

/// Replaces the file at `path` as a whole: writes and flushes a temporary file beside it and renames that
/// into place. If a step fails, the file is unchanged, no temporary file is left, and the Error holds the
/// reason (domain "FileManager", an errno value). Missing folders of the path are created. Follows symbolic
/// links, also dangling ones, but creates no folder at their target. Any thread.
Result<void> writeFile(const QString &path, const QByteArray &bytes,
                       FileAccess access = FileAccess::AsBefore);

/// Creates the folder and its missing parents; the same Errors. Any thread.
Result<void> makeFolders(const QString &folder);

/// Renames an unreadable file to "PATH.damaged-N", so that it is not overwritten, and logs the new name.
/// Returns the new name, or none when the rename fails. Any thread.
std::optional<QString> setDamagedFileAside(const QString &path);

/// Replaces the system calls of the first two functions in tests; null restores them.
void setCallsOfWriteFile(FileSystemCalls *calls);
