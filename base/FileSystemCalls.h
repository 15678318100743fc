#pragma once
#include <QByteArray>
#include <sys/stat.h>
#include <sys/types.h>

/// Thin wrappers of the system calls that move and write files; names are the file system's bytes. Each
/// returns a negative errno value on failure, otherwise 0 or a count. Any thread. Tests override single
/// calls.
class FileSystemCalls
{
public:
    virtual ~FileSystemCalls();

    /// Renames without replacing: EEXIST when the target exists, EINVAL, ENOSYS or EOPNOTSUPP when the file
    /// system does not support it.
    virtual int renameWithoutReplacing(const QByteArray &from, const QByteArray &to);
    virtual int rename(const QByteArray &from, const QByteArray &to);
    virtual int link(const QByteArray &from, const QByteArray &to);
    virtual int unlink(const QByteArray &path);
    /// Moves the item to the desktop's trash.
    virtual int moveToTrash(const QByteArray &path);
    virtual int makeFolder(const QByteArray &path);

    /// The status of the name itself, also of a symbolic link.
    virtual int status(const QByteArray &path, struct stat &status);
    virtual int statusOfOpen(int descriptor, struct stat &status);

    /// Returns a descriptor.
    virtual int open(const QByteArray &path, int flags, mode_t mode);
    virtual ssize_t read(int descriptor, char *bytes, std::size_t size);
    virtual ssize_t write(int descriptor, const char *bytes, std::size_t size);
    virtual int setMode(int descriptor, mode_t mode);
    virtual int setTimes(int descriptor, const struct stat &status);
    virtual int flush(int descriptor);
    /// Returns a second descriptor of the same open file. A lock lasts until both are closed.
    virtual int duplicate(int descriptor);
    /// Takes an exclusive lock without waiting; EWOULDBLOCK when another open file holds it.
    virtual int lock(int descriptor);
    virtual int close(int descriptor);
};

/// Whether a call's result means that the file system or kernel does not support it.
bool isUnsupported(int result);

// Absolute paths as the file system's bytes.
QByteArray withoutTrailingSlashes(QByteArray path);
QByteArray lastComponent(const QByteArray &path);
QByteArray parentFolder(const QByteArray &path);
