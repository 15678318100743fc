#include "TemporaryFile.h"
#include "FileSystemCalls.h"

#include <QRandomGenerator>

#include <cerrno>

#include <fcntl.h>

namespace
{
constexpr int NameAttempts = 20;
} // namespace

int openTemporary(FileSystemCalls &calls, const QByteArray &folder, mode_t mode, QByteArray &name)
{
    for (int attempt = 0; attempt < NameAttempts; ++attempt) {
        const QByteArray random = QByteArray::number(QRandomGenerator::system()->generate64(), 36);
        name = (folder == "/" ? QByteArray() : folder) + "/.plovendix-" + random + ".part";
        const int descriptor = calls.open(name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
        if (descriptor != -EEXIST)
            return descriptor;
    }
    return -EEXIST;
}

int writeAll(FileSystemCalls &calls, int descriptor, const char *bytes, std::size_t size)
{
    for (std::size_t done = 0; done < size;) {
        const ssize_t written = calls.write(descriptor, bytes + done, size - done);
        if (written == 0)
            return -EIO;
        if (written < 0 && written != -EINTR)
            return static_cast<int>(written);
        done += written > 0 ? static_cast<std::size_t>(written) : 0;
    }
    return 0;
}

int flushToDisk(FileSystemCalls &calls, int descriptor)
{
    const int flushed = calls.flush(descriptor);
    const bool cannotFlush = flushed == -EINVAL || flushed == -ENOSYS || flushed == -EOPNOTSUPP;
    return cannotFlush ? 0 : flushed;
}

int flushFolder(FileSystemCalls &calls, const QByteArray &folder)
{
    const int descriptor = calls.open(folder, O_RDONLY | O_DIRECTORY, 0);
    if (descriptor < 0)
        return 0;
    const int flushed = flushToDisk(calls, descriptor);
    calls.close(descriptor);
    return flushed;
}
