#pragma once
#include <QByteArray>
#include <QList>
#include <sys/stat.h>
#include <sys/types.h>

/// The system calls that files are moved and written by, one to one, with names as the file system's bytes.
/// Each gives a negative errno value where it fails, else 0 or what it counts. Any thread. Tests replace
/// single calls.
class FileSystemCalls
{
public:
    virtual ~FileSystemCalls();

    /// Fails with EEXIST instead of replacing; EINVAL, ENOSYS or EOPNOTSUPP where the file system cannot do
    /// that.
    virtual int renameWithoutReplacing(const QByteArray &from, const QByteArray &to);
    virtual int rename(const QByteArray &from, const QByteArray &to);
    virtual int link(const QByteArray &from, const QByteArray &to);
    virtual int unlink(const QByteArray &path);

    /// Into the desktop's trash, from where a person can take it back.
    virtual int moveToTrash(const QByteArray &path);

    virtual int makeFolder(const QByteArray &path);
    /// The names in a folder, without "." and "..".
    virtual int listFolder(const QByteArray &path, QList<QByteArray> &names);

    /// Of what the name itself is, a symbolic link included.
    virtual int status(const QByteArray &path, struct stat &status);
    /// Of what a symbolic link leads to.
    virtual int statusOfTarget(const QByteArray &path, struct stat &status);
    virtual int statusOfOpen(int descriptor, struct stat &status);

    /// A descriptor.
    virtual int open(const QByteArray &path, int flags, mode_t mode);
    virtual ssize_t read(int descriptor, char *bytes, std::size_t size);
    virtual ssize_t write(int descriptor, const char *bytes, std::size_t size);
    virtual int setMode(int descriptor, mode_t mode);
    virtual int setTimes(int descriptor, const struct stat &status);
    virtual int flush(int descriptor);
    /// A second descriptor of the same open file; a lock lasts until both are closed.
    virtual int duplicate(int descriptor);
    /// Locks the open file for its process alone, without waiting: EWOULDBLOCK when it is locked elsewhere.
    virtual int lock(int descriptor);
    virtual int close(int descriptor);
};
