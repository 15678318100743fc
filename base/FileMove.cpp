#include "FileMove.h"
#include "FileErrors.h"
#include "FileSystemCalls.h"
#include "PartFile.h"

#include <QLoggingCategory>

#include <cerrno>
#include <vector>

#include <fcntl.h>

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform")

constexpr std::size_t BufferBytes = 262'144;

bool cannotLink(int result)
{
    return isUnsupported(result) || result == -EPERM || result == -EMLINK || result == -EXDEV;
}

/// Removes the first name after a second link was made. Both names are the same file, so undoing loses
/// nothing.
int dropFirstName(FileSystemCalls &calls, const QByteArray &first, const QByteArray &second)
{
    const int removed = calls.unlink(first);
    if (removed < 0)
        calls.unlink(second);
    return removed;
}

/// For file systems without an atomic rename that refuses to replace. A file that another program creates
/// between the two calls is replaced. Reserving the name with an empty file would leave that file behind when
/// the process dies.
int renameWhereNothingIs(FileSystemCalls &calls, const QByteArray &from, const QByteArray &to)
{
    struct stat status = {};
    const int found = calls.status(to, status);
    if (found == -ENOENT)
        return calls.rename(from, to);
    return found < 0 ? found : -EEXIST;
}

int publishInPlaceOf(FileSystemCalls &calls, const QByteArray &from, const QByteArray &to)
{
    const int renamed = calls.rename(from, to);
    if (renamed != -EISDIR)
        return renamed;
    const int trashed = calls.moveToTrash(to);
    return trashed < 0 ? trashed : calls.rename(from, to);
}

int publish(FileSystemCalls &calls, const QByteArray &from, const QByteArray &to, Existing existing)
{
    if (existing == Existing::Replaced)
        return publishInPlaceOf(calls, from, to);
    const int renamed = calls.renameWithoutReplacing(from, to);
    if (!isUnsupported(renamed))
        return renamed;
    const int linked = calls.link(from, to);
    if (linked == 0)
        return dropFirstName(calls, from, to);
    return cannotLink(linked) ? renameWhereNothingIs(calls, from, to) : linked;
}

int copyBytes(FileSystemCalls &calls, int from, PartFile &to)
{
    std::vector<char> buffer(BufferBytes);
    for (;;) {
        const ssize_t size = calls.read(from, buffer.data(), buffer.size());
        if (size == -EINTR)
            continue;
        if (size <= 0)
            return static_cast<int>(size);
        if (const int written = to.write(buffer.data(), static_cast<std::size_t>(size)); written < 0)
            return written;
    }
}

int copyInto(FileSystemCalls &calls, PartFile &part, const QByteArray &source, const struct stat &status)
{
    const int descriptor = calls.open(source, O_RDONLY | O_NOFOLLOW | O_NONBLOCK, 0);
    if (descriptor < 0)
        return descriptor;
    const int copied = copyBytes(calls, descriptor, part);
    calls.close(descriptor);
    if (copied < 0)
        return copied;
    // File systems of removable disks support neither; only the content matters.
    calls.setMode(part.descriptor(), status.st_mode & 0777);
    calls.setTimes(part.descriptor(), status);
    return part.finishWriting();
}

/// Returns a negative errno value when the source is still the only file. What happens after the new name is
/// on the disk is logged only.
int copyAcross(FileSystemCalls &calls, const QByteArray &source, const QByteArray &destination,
               Existing existing, const struct stat &status)
{
    PartFile part(calls);
    int result = part.make(parentFolder(destination), 0600);
    if (result == 0)
        result = copyInto(calls, part, source, status);
    if (result == 0)
        result = publish(calls, part.path(), destination, existing);
    if (result < 0)
        return result;
    const int flushed = part.release();
    if (flushed < 0 && existing == Existing::Replaced) {
        // The older file cannot be brought back, so the move counts; a power failure may still undo it.
        qCWarning(log, "%s was copied and is kept: its new place may not be on the disk: %s",
                  source.constData(), qUtf8Printable(qt_error_string(-flushed)));
        return 0;
    }
    if (flushed < 0) {
        calls.unlink(destination);
        return flushed;
    }
    if (const int removed = calls.unlink(source); removed < 0)
        qCWarning(log, "%s was copied but could not be removed: %s", source.constData(),
                  qUtf8Printable(qt_error_string(-removed)));
    return 0;
}
} // namespace

Result<void> moveFile(FileSystemCalls &calls, const QByteArray &source, const QByteArray &destination,
                      Existing existing)
{
    struct stat status = {};
    int result = calls.status(source, status);
    if (result == 0) {
        PartFile::removeLeftovers(calls, parentFolder(destination));
        result = publish(calls, source, destination, existing);
    }
    if (result == -EXDEV && S_ISREG(status.st_mode))
        result = copyAcross(calls, source, destination, existing, status);
    if (result == -ENOENT && calls.status(source, status) == -ENOENT)
        return missingSourceError(source, destination);
    if (result < 0)
        return moveError(-result, source, destination);
    return {};
}
