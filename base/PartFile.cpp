#include "PartFile.h"
#include "FileSystemCalls.h"

#include <QRandomGenerator>

#include <cerrno>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace
{
constexpr char Prefix[] = ".plovendix-";
constexpr char Suffix[] = ".part";
constexpr int NameAttempts = 20;

QByteArray randomName()
{
    return Prefix + QByteArray::number(QRandomGenerator::system()->generate64(), 36) + Suffix;
}

/// Whether this user owns the open file and no living process has locked it.
bool isLeftover(FileSystemCalls &calls, int descriptor)
{
    struct stat status = {};
    return calls.statusOfOpen(descriptor, status) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == ::geteuid() && calls.lock(descriptor) == 0;
}
} // namespace

PartFile::~PartFile()
{
    if (!m_path.isEmpty())
        m_calls.unlink(m_path);
    close(m_descriptor);
    close(m_lock);
}

int PartFile::make(const QByteArray &folder, mode_t mode)
{
    for (int attempt = 0; attempt < NameAttempts; ++attempt) {
        const int opened = open((folder == "/" ? QByteArray() : folder) + '/' + randomName(), mode);
        if (opened != -EEXIST)
            return opened;
    }
    return -EEXIST;
}

/// Also returns EEXIST when another process removed the new file as a leftover before it was locked.
int PartFile::open(const QByteArray &path, mode_t mode)
{
    m_descriptor = m_calls.open(path, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
    if (m_descriptor < 0)
        return m_descriptor;
    m_path = path;
    m_lock = m_calls.duplicate(m_descriptor);
    if (m_lock < 0)
        return m_lock;
    // Without file locks leftovers are not removed either.
    const bool isLockedElsewhere = m_calls.lock(m_descriptor) == -EWOULDBLOCK;
    struct stat status = {};
    const bool isRemoved = m_calls.statusOfOpen(m_descriptor, status) == 0 && status.st_nlink == 0;
    if (!isLockedElsewhere && !isRemoved)
        return 0;
    m_calls.unlink(std::exchange(m_path, {}));
    close(m_descriptor);
    close(m_lock);
    return -EEXIST;
}

int PartFile::write(const char *bytes, std::size_t size)
{
    for (std::size_t done = 0; done < size;) {
        const ssize_t written = m_calls.write(m_descriptor, bytes + done, size - done);
        if (written == 0)
            return -EIO;
        if (written < 0 && written != -EINTR)
            return static_cast<int>(written);
        done += written > 0 ? static_cast<std::size_t>(written) : 0;
    }
    return 0;
}

int PartFile::finishWriting()
{
    const int flushed = flush(m_descriptor);
    const int closed = m_calls.close(std::exchange(m_descriptor, -1));
    return flushed < 0 ? flushed : closed;
}

int PartFile::release()
{
    const int folder = m_calls.open(parentFolder(std::exchange(m_path, {})), O_RDONLY | O_DIRECTORY, 0);
    if (folder < 0)
        return 0;
    const int flushed = flush(folder);
    m_calls.close(folder);
    return flushed;
}

int PartFile::flush(int descriptor)
{
    const int flushed = m_calls.flush(descriptor);
    return isUnsupported(flushed) ? 0 : flushed;
}

void PartFile::close(int &descriptor)
{
    if (descriptor >= 0)
        m_calls.close(descriptor);
    descriptor = -1;
}

void PartFile::removeLeftovers(FileSystemCalls &calls, const QByteArray &folder)
{
    std::error_code error;
    std::filesystem::directory_iterator entry(folder.constData(), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const QByteArray path(entry->path().c_str());
        if (!lastComponent(path).startsWith(Prefix) || !path.endsWith(Suffix))
            continue;
        const int descriptor = calls.open(path, O_RDWR | O_NOFOLLOW | O_NONBLOCK, 0);
        if (descriptor < 0)
            continue;
        if (isLeftover(calls, descriptor))
            calls.unlink(path);
        calls.close(descriptor);
    }
}
