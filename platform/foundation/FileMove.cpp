#include "FileMove.h"
#include "FileErrors.h"
#include "FilePaths.h"
#include "FileSystemCalls.h"

#include <QLoggingCategory>
#include <QRandomGenerator>

#include <array>
#include <cerrno>
#include <vector>

#include <fcntl.h>

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform")

constexpr std::size_t BufferBytes = 262'144;
constexpr int TemporaryNameAttempts = 20;

/// What file systems and kernels answer that do not know a way of working.
bool isUnsupported(int result)
{
    return result == -EINVAL || result == -ENOSYS || result == -EOPNOTSUPP;
}

bool cannotLink(int result)
{
    return isUnsupported(result) || result == -EPERM || result == -EMLINK || result == -EXDEV;
}
} // namespace

FileMove::FileMove(FileSystemCalls &calls, const QByteArray &source, const QByteArray &destination)
    : m_calls(calls), m_source(source), m_destination(destination)
{
}

Result<void> FileMove::run()
{
    struct stat status = {};
    if (const int found = m_calls.status(m_source, status); found < 0)
        return failure(-found);
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
    const int renamed = m_calls.renameWithoutReplacing(from, to);
    if (!isUnsupported(renamed))
        return renamed;
    const int linked = m_calls.link(from, to);
    if (linked == 0)
        return dropFirstName(from, to);
    return cannotLink(linked) ? publishOverOwnFile(from, to) : linked;
}

int FileMove::publishFolder(const QByteArray &from, const QByteArray &to)
{
    const int renamed = m_calls.renameWithoutReplacing(from, to);
    if (!isUnsupported(renamed))
        return renamed;
    // A plain rename never replaces a file or a filled folder by a folder; an empty one is looked for first.
    struct stat status = {};
    const int found = m_calls.status(to, status);
    if (found == -ENOENT)
        return m_calls.rename(from, to);
    return found < 0 ? found : -EEXIST;
}

/// Ends a move by a second link. Both names are the same file, so that going back loses nothing.
int FileMove::dropFirstName(const QByteArray &first, const QByteArray &second)
{
    const int removed = m_calls.unlink(first);
    if (removed < 0)
        m_calls.unlink(second);
    return removed;
}

int FileMove::publishOverOwnFile(const QByteArray &from, const QByteArray &to)
{
    const int descriptor = m_calls.open(to, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (descriptor < 0)
        return descriptor;
    m_calls.close(descriptor);
    const int renamed = m_calls.rename(from, to);
    if (renamed < 0)
        m_calls.unlink(to);
    return renamed;
}

Result<void> FileMove::copyAcross(const struct stat &status)
{
    if (!S_ISREG(status.st_mode))
        return folderBetweenDisksError(m_source, m_destination);
    QByteArray temporary;
    const int target = makeTemporary(temporary);
    if (target < 0)
        return failure(-target);
    int result = copyInto(target, status);
    const int closed = m_calls.close(target);
    if (result == 0)
        result = closed;
    if (result == 0)
        result = publish(temporary, m_destination);
    if (result < 0) {
        m_calls.unlink(temporary);
        return failure(-result);
    }
    result = flushFolder(parentFolder(m_destination));
    if (result < 0) {
        m_calls.unlink(m_destination);
        return failure(-result);
    }
    if (const int removed = m_calls.unlink(m_source); removed < 0)
        qCWarning(log, "%s was copied but could not be removed: %s", m_source.constData(),
                  qUtf8Printable(qt_error_string(-removed)));
    return {};
}

int FileMove::makeTemporary(QByteArray &name)
{
    const QByteArray folder = parentFolder(m_destination);
    for (int attempt = 0; attempt < TemporaryNameAttempts; ++attempt) {
        const QByteArray random = QByteArray::number(QRandomGenerator::system()->generate64(), 36);
        name = (folder == "/" ? QByteArray() : folder) + "/.plovendix-" + random + ".part";
        const int descriptor = m_calls.open(name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
        if (descriptor != -EEXIST)
            return descriptor;
    }
    return -EEXIST;
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
    // File systems of removable disks know neither; the content is what counts.
    m_calls.setMode(target, status.st_mode & 0777);
    m_calls.setTimes(target, status);
    const int flushed = m_calls.flush(target);
    return isUnsupported(flushed) ? 0 : flushed;
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
        for (ssize_t done = 0; done < size;) {
            const ssize_t written =
                m_calls.write(to, buffer.data() + done, static_cast<std::size_t>(size - done));
            if (written < 0 && written != -EINTR)
                return static_cast<int>(written);
            done += std::max<ssize_t>(written, 0);
        }
    }
}

int FileMove::flushFolder(const QByteArray &folder)
{
    const int descriptor = m_calls.open(folder, O_RDONLY | O_DIRECTORY, 0);
    // A folder that may be written but not read cannot be flushed by us; the file itself is on the disk
    // already.
    if (descriptor < 0)
        return 0;
    const int flushed = m_calls.flush(descriptor);
    m_calls.close(descriptor);
    return isUnsupported(flushed) ? 0 : flushed;
}

Error FileMove::failure(int code)
{
    struct stat status = {};
    if (code == ENOENT && m_calls.status(m_source, status) == -ENOENT)
        return missingSourceError(m_source, m_destination);
    if (code == ENOENT)
        return missingFolderError(m_source, m_destination);
    return moveError(code, m_source, m_destination);
}
