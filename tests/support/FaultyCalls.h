#pragma once
#include <base/FileSystemCalls.h>

#include <QString>
#include <QStringList>

#include <algorithm>
#include <cerrno>

/// The real system calls, of which one fails as the test says, on file systems that can do as much as the
/// test says.
class FaultyCalls : public FileSystemCalls
{
public:
    /// Names below this folder are on another file system than the rest.
    QByteArray otherDisk;
    bool canRefuseToReplace = true;
    bool canLink = true;
    /// At most so many bytes are written at once, each time after one interruption.
    std::size_t writesAtMost = 0;

    /// The call with this number, counted from 1, fails with this errno value; 0 for none.
    int failingCall = 0;
    int failure = 0;
    /// Every call of this name fails with the value, too.
    QString failingName;

    QStringList made;
    int openDescriptors = 0;

    int renameWithoutReplacing(const QByteArray &from, const QByteArray &to) override
    {
        const int limit = areOnTwoDisks(from, to) ? -EXDEV : canRefuseToReplace ? 0 : -EINVAL;
        return faultOr("renameWithoutReplacing", limit,
                       [&] { return FileSystemCalls::renameWithoutReplacing(from, to); });
    }
    int rename(const QByteArray &from, const QByteArray &to) override
    {
        return faultOr("rename", areOnTwoDisks(from, to) ? -EXDEV : 0,
                       [&] { return FileSystemCalls::rename(from, to); });
    }
    int link(const QByteArray &from, const QByteArray &to) override
    {
        const int limit = areOnTwoDisks(from, to) ? -EXDEV : canLink ? 0 : -EPERM;
        return faultOr("link", limit, [&] { return FileSystemCalls::link(from, to); });
    }
    int unlink(const QByteArray &path) override
    {
        return faultOr("unlink", 0, [&] { return FileSystemCalls::unlink(path); });
    }
    int moveToTrash(const QByteArray &path) override
    {
        return faultOr("moveToTrash", 0, [&] { return FileSystemCalls::moveToTrash(path); });
    }
    int makeFolder(const QByteArray &path) override
    {
        return faultOr("makeFolder", 0, [&] { return FileSystemCalls::makeFolder(path); });
    }
    int status(const QByteArray &path, struct stat &status) override
    {
        return faultOr("status", 0, [&] { return FileSystemCalls::status(path, status); });
    }
    int statusOfOpen(int descriptor, struct stat &status) override
    {
        return faultOr("statusOfOpen", 0, [&] { return FileSystemCalls::statusOfOpen(descriptor, status); });
    }
    int open(const QByteArray &path, int flags, mode_t mode) override
    {
        const int descriptor = faultOr("open", 0, [&] { return FileSystemCalls::open(path, flags, mode); });
        openDescriptors += descriptor >= 0 ? 1 : 0;
        return descriptor;
    }
    ssize_t read(int descriptor, char *bytes, std::size_t size) override
    {
        return faultOr("read", 0, [&] { return FileSystemCalls::read(descriptor, bytes, size); });
    }
    ssize_t write(int descriptor, const char *bytes, std::size_t size) override
    {
        m_wasInterrupted = writesAtMost > 0 && !m_wasInterrupted;
        const std::size_t part = writesAtMost > 0 ? std::min(size, writesAtMost) : size;
        return faultOr("write", m_wasInterrupted ? -EINTR : 0,
                       [&] { return FileSystemCalls::write(descriptor, bytes, part); });
    }
    int setMode(int descriptor, mode_t mode) override
    {
        return faultOr("setMode", 0, [&] { return FileSystemCalls::setMode(descriptor, mode); });
    }
    int setTimes(int descriptor, const struct stat &status) override
    {
        return faultOr("setTimes", 0, [&] { return FileSystemCalls::setTimes(descriptor, status); });
    }
    int flush(int descriptor) override
    {
        return faultOr("flush", 0, [&] { return FileSystemCalls::flush(descriptor); });
    }
    int duplicate(int descriptor) override
    {
        const int second = faultOr("duplicate", 0, [&] { return FileSystemCalls::duplicate(descriptor); });
        openDescriptors += second >= 0 ? 1 : 0;
        return second;
    }
    int lock(int descriptor) override
    {
        return faultOr("lock", 0, [&] { return FileSystemCalls::lock(descriptor); });
    }
    /// A close that fails has closed all the same.
    int close(int descriptor) override
    {
        const int closed = FileSystemCalls::close(descriptor);
        --openDescriptors;
        return faultOr("close", 0, [&] { return closed; });
    }

protected:
    /// Before each call; tests may do something at that moment.
    virtual void beforeCall(const QString &) {}

private:
    /// The result of a call that fails as the test says, else by the limit of the file system, else as it
    /// does.
    template <class Call>
    auto faultOr(const char *name, int limit, Call call) -> decltype(call())
    {
        made += QString::fromLatin1(name);
        beforeCall(made.last());
        if (made.size() == failingCall || made.last() == failingName)
            return -failure;
        return limit < 0 ? limit : call();
    }

    bool areOnTwoDisks(const QByteArray &from, const QByteArray &to) const
    {
        return !otherDisk.isEmpty() && from.startsWith(otherDisk) != to.startsWith(otherDisk);
    }

    bool m_wasInterrupted = false;
};
