#include "FileFlushing.h"
#include "FileSystemCalls.h"

#include <cerrno>

#include <fcntl.h>

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
