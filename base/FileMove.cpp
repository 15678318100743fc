#include "FileMove.h"
#include "FileErrors.h"
#include "FilePaths.h"
#include "FileSystemCalls.h"
#include "PartFile.h"
#include "FileFlushing.h"

#include <QLoggingCategory>

#include <array>
#include <cerrno>
#include <vector>

#include <fcntl.h>

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform")

constexpr std::size_t BufferBytes = 262'144;

/// Whether the error means that the file system or kernel does not support the operation.
bool isUnsupported(int result)
{
    return result == -EINVAL || result == -ENOSYS || result == -EOPNOTSUPP;
}

bool cannotLink(int result)
{
    return isUnsupported(result) || result == -EPERM || result == -EMLINK || result == -EXDEV;
}
} // namespace

FileMove::FileMove(FileSystemCalls &calls, const QByteArray &source, const QByteArray &destination,
                   Existing existing)
    : m_calls(calls), m_source(source), m_destination(destination), m_existing(existing)
{
}

Result<void> FileMove::run()
{
    struct stat status = {};
    if (const int found = m_calls.status(m_source, status); found < 0)
        return failure(-found);
    PartFile::removeLeftovers(m_calls, parentFolder(m_destination));
    const int moved =
        S_ISDIR(status.st_mode) ? publishFolder(m_source, m_destination) : publish(m_source, m_destination);
    if (moved == -EXDEV)
        return copyAcross(status);
    if (moved < 0)
        return failure(-moved);
    return {};
}

int FileMove::publish(const QByteArray &from, const QByteArray &to)
{
    if (m_existing == Existing::Replaced)
        return publishInPlaceOf(from, to);
    const int renamed = m_calls.renameWithoutReplacing(from, to);
    if (!isUnsupported(renamed))
        return renamed;
    const int linked = m_calls.link(from, to);
    if (linked == 0)
        return dropFirstName(from, to);
    return cannotLink(linked) ? renameWhereNothingIs(from, to) : linked;
}

int FileMove::publishInPlaceOf(const QByteArray &from, const QByteArray &to)
{
    const int renamed = m_calls.rename(from, to);
    if (renamed != -EISDIR)
        return renamed;
    const int trashed = m_calls.moveToTrash(to);
    return trashed < 0 ? trashed : m_calls.rename(from, to);
}

int FileMove::publishFolder(const QByteArray &from, const QByteArray &to)
{
    const int renamed = m_calls.renameWithoutReplacing(from, to);
    return isUnsupported(renamed) ? renameWhereNothingIs(from, to) : renamed;
}

/// Removes the first name after a second link was made. Both names are the same file, so undoing loses
/// nothing.
int FileMove::dropFirstName(const QByteArray &first, const QByteArray &second)
{
    const int removed = m_calls.unlink(first);
    if (removed < 0)
        m_calls.unlink(second);
    return removed;
}

/// For file systems without an atomic rename that refuses to replace. A file that another program creates
/// between the two calls is replaced. Reserving the name with an empty file would leave that file behind when
/// the process dies.
int FileMove::renameWhereNothingIs(const QByteArray &from, const QByteArray &to)
{
    struct stat status = {};
    const int found = m_calls.status(to, status);
    if (found == -ENOENT)
        return m_calls.rename(from, to);
    return found < 0 ? found : -EEXIST;
}

Result<void> FileMove::copyAcross(const struct stat &status)
{
    if (!S_ISREG(status.st_mode))
        return folderBetweenDisksError(m_source, m_destination);
    PartFile part(m_calls);
    int result = part.make(parentFolder(m_destination), 0600);
    if (result == 0)
        result = copyInto(part.descriptor(), status);
    if (result == 0)
        result = part.finishWriting();
    if (result == 0)
        result = publish(part.path(), m_destination);
    if (result < 0)
        return failure(-result);
    part.release();
    result = flushFolder(m_calls, parentFolder(m_destination));
    if (result < 0 && m_existing == Existing::Replaced) {
        // The older file cannot be brought back, so the move counts; a power failure may still undo it.
        qCWarning(log, "%s was copied and is kept: its new place may not be on the disk: %s",
                  m_source.constData(), qUtf8Printable(qt_error_string(-result)));
        return {};
    }
    if (result < 0) {
        m_calls.unlink(m_destination);
        return failure(-result);
    }
    if (const int removed = m_calls.unlink(m_source); removed < 0)
        qCWarning(log, "%s was copied but could not be removed: %s", m_source.constData(),
                  qUtf8Printable(qt_error_string(-removed)));
    return {};
}

int FileMove::copyInto(int target, const struct stat &status)
{
    const int source = m_calls.open(m_source, O_RDONLY | O_NOFOLLOW | O_NONBLOCK, 0);
    if (source < 0)
        return source;
    const int copied = copyBytes(source, target);
    m_calls.close(source);
    if (copied < 0)
        return copied;
    // File systems of removable disks support neither; only the content matters.
    m_calls.setMode(target, status.st_mode & 0777);
    m_calls.setTimes(target, status);
    return flushToDisk(m_calls, target);
}

int FileMove::copyBytes(int from, int to)
{
    std::vector<char> buffer(BufferBytes);
    for (;;) {
        const ssize_t size = m_calls.read(from, buffer.data(), buffer.size());
        if (size == -EINTR)
            continue;
        if (size <= 0)
            return static_cast<int>(size);
        const int written = writeAll(m_calls, to, buffer.data(), static_cast<std::size_t>(size));
        if (written < 0)
            return written;
    }
}

base::Error FileMove::failure(int code)
{
    struct stat status = {};
    if (code == ENOENT && m_calls.status(m_source, status) == -ENOENT)
        return missingSourceError(m_source, m_destination);
    if (code == ENOENT)
        return missingFolderError(m_source, m_destination);
    return moveError(code, m_source, m_destination);
}
