#include "FileSystemCalls.h"
#include "GObjectPointer.h"

#include <gio/gio.h>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace
{
template <class T>
T resultOf(T result)
{
    return result < 0 ? static_cast<T>(-errno) : result;
}

int codeOf(const GErrorPointer &error)
{
    if (g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_NOT_SUPPORTED))
        return EOPNOTSUPP;
    if (g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_PERMISSION_DENIED))
        return EACCES;
    if (g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_NO_SPACE))
        return ENOSPC;
    return EIO;
}
} // namespace

FileSystemCalls::~FileSystemCalls() = default;

int FileSystemCalls::renameWithoutReplacing(const QByteArray &from, const QByteArray &to)
{
    return resultOf(::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE));
}

int FileSystemCalls::rename(const QByteArray &from, const QByteArray &to)
{
    return resultOf(::rename(from.constData(), to.constData()));
}

int FileSystemCalls::link(const QByteArray &from, const QByteArray &to)
{
    return resultOf(::link(from.constData(), to.constData()));
}

int FileSystemCalls::unlink(const QByteArray &path)
{
    return resultOf(::unlink(path.constData()));
}

int FileSystemCalls::makeFolder(const QByteArray &path)
{
    return resultOf(::mkdir(path.constData(), 0777));
}

int FileSystemCalls::moveToTrash(const QByteArray &path)
{
    const GObjectPointer<GFile> file(g_file_new_for_path(path.constData()));
    GError *rawError = nullptr;
    const bool trashed = g_file_trash(file.get(), nullptr, &rawError);
    const GErrorPointer error(rawError);
    return trashed ? 0 : -codeOf(error);
}

int FileSystemCalls::status(const QByteArray &path, struct stat &status)
{
    return resultOf(::lstat(path.constData(), &status));
}

int FileSystemCalls::statusOfOpen(int descriptor, struct stat &status)
{
    return resultOf(::fstat(descriptor, &status));
}

int FileSystemCalls::open(const QByteArray &path, int flags, mode_t mode)
{
    return resultOf(::open(path.constData(), flags | O_CLOEXEC, mode));
}

ssize_t FileSystemCalls::read(int descriptor, char *bytes, std::size_t size)
{
    return resultOf(::read(descriptor, bytes, size));
}

ssize_t FileSystemCalls::write(int descriptor, const char *bytes, std::size_t size)
{
    return resultOf(::write(descriptor, bytes, size));
}

int FileSystemCalls::setMode(int descriptor, mode_t mode)
{
    return resultOf(::fchmod(descriptor, mode));
}

int FileSystemCalls::setTimes(int descriptor, const struct stat &status)
{
    const timespec times[] = {status.st_atim, status.st_mtim};
    return resultOf(::futimens(descriptor, times));
}

int FileSystemCalls::flush(int descriptor)
{
    return resultOf(::fsync(descriptor));
}

int FileSystemCalls::duplicate(int descriptor)
{
    return resultOf(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
}

int FileSystemCalls::lock(int descriptor)
{
    return resultOf(::flock(descriptor, LOCK_EX | LOCK_NB));
}

int FileSystemCalls::close(int descriptor)
{
    return resultOf(::close(descriptor));
}

bool isUnsupported(int result)
{
    return result == -EINVAL || result == -ENOSYS || result == -EOPNOTSUPP;
}

QByteArray withoutTrailingSlashes(QByteArray path)
{
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    return path;
}

QByteArray lastComponent(const QByteArray &path)
{
    const QByteArray plain = withoutTrailingSlashes(path);
    return plain.mid(plain.lastIndexOf('/') + 1);
}

QByteArray parentFolder(const QByteArray &path)
{
    const QByteArray plain = withoutTrailingSlashes(path);
    const qsizetype slash = plain.lastIndexOf('/');
    return slash <= 0 ? QByteArray("/") : withoutTrailingSlashes(plain.left(slash));
}
