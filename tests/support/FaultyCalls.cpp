#include "FaultyCalls.h"

#include <algorithm>
#include <cerrno>

int FaultyCalls::faultOf(const char *name)
{
    made += QString::fromLatin1(name);
    const bool fails = made.size() == failingCall || made.last() == failingName;
    return fails ? -failure : 0;
}

bool FaultyCalls::areOnTwoDisks(const QByteArray &from, const QByteArray &to) const
{
    return !otherDisk.isEmpty() && from.startsWith(otherDisk) != to.startsWith(otherDisk);
}

int FaultyCalls::renameWithoutReplacing(const QByteArray &from, const QByteArray &to)
{
    if (const int fault = faultOf("renameWithoutReplacing"))
        return fault;
    if (areOnTwoDisks(from, to))
        return -EXDEV;
    return canRefuseToReplace ? FileSystemCalls::renameWithoutReplacing(from, to) : -EINVAL;
}

int FaultyCalls::rename(const QByteArray &from, const QByteArray &to)
{
    if (const int fault = faultOf("rename"))
        return fault;
    return areOnTwoDisks(from, to) ? -EXDEV : FileSystemCalls::rename(from, to);
}

int FaultyCalls::link(const QByteArray &from, const QByteArray &to)
{
    if (const int fault = faultOf("link"))
        return fault;
    if (areOnTwoDisks(from, to))
        return -EXDEV;
    return canLink ? FileSystemCalls::link(from, to) : -EPERM;
}

int FaultyCalls::unlink(const QByteArray &path)
{
    const int fault = faultOf("unlink");
    return fault ? fault : FileSystemCalls::unlink(path);
}

int FaultyCalls::moveToTrash(const QByteArray &path)
{
    const int fault = faultOf("moveToTrash");
    return fault ? fault : FileSystemCalls::moveToTrash(path);
}

int FaultyCalls::makeFolder(const QByteArray &path)
{
    const int fault = faultOf("makeFolder");
    return fault ? fault : FileSystemCalls::makeFolder(path);
}

int FaultyCalls::listFolder(const QByteArray &path, QList<QByteArray> &names)
{
    const int fault = faultOf("listFolder");
    return fault ? fault : FileSystemCalls::listFolder(path, names);
}

int FaultyCalls::status(const QByteArray &path, struct stat &status)
{
    const int fault = faultOf("status");
    return fault ? fault : FileSystemCalls::status(path, status);
}

int FaultyCalls::statusOfTarget(const QByteArray &path, struct stat &status)
{
    const int fault = faultOf("statusOfTarget");
    return fault ? fault : FileSystemCalls::statusOfTarget(path, status);
}

int FaultyCalls::statusOfOpen(int descriptor, struct stat &status)
{
    const int fault = faultOf("statusOfOpen");
    return fault ? fault : FileSystemCalls::statusOfOpen(descriptor, status);
}

int FaultyCalls::open(const QByteArray &path, int flags, mode_t mode)
{
    if (const int fault = faultOf("open"))
        return fault;
    const int descriptor = FileSystemCalls::open(path, flags, mode);
    openDescriptors += descriptor >= 0 ? 1 : 0;
    return descriptor;
}

ssize_t FaultyCalls::read(int descriptor, char *bytes, std::size_t size)
{
    const int fault = faultOf("read");
    return fault ? fault : FileSystemCalls::read(descriptor, bytes, size);
}

ssize_t FaultyCalls::write(int descriptor, const char *bytes, std::size_t size)
{
    if (const int fault = faultOf("write"))
        return fault;
    if (writesAtMost == 0)
        return FileSystemCalls::write(descriptor, bytes, size);
    m_wasInterrupted = !m_wasInterrupted;
    return m_wasInterrupted ? -EINTR
                            : FileSystemCalls::write(descriptor, bytes, std::min(size, writesAtMost));
}

int FaultyCalls::setMode(int descriptor, mode_t mode)
{
    const int fault = faultOf("setMode");
    return fault ? fault : FileSystemCalls::setMode(descriptor, mode);
}

int FaultyCalls::setTimes(int descriptor, const struct stat &status)
{
    const int fault = faultOf("setTimes");
    return fault ? fault : FileSystemCalls::setTimes(descriptor, status);
}

int FaultyCalls::flush(int descriptor)
{
    const int fault = faultOf("flush");
    return fault ? fault : FileSystemCalls::flush(descriptor);
}

int FaultyCalls::duplicate(int descriptor)
{
    if (const int fault = faultOf("duplicate"))
        return fault;
    const int second = FileSystemCalls::duplicate(descriptor);
    openDescriptors += second >= 0 ? 1 : 0;
    return second;
}

int FaultyCalls::lock(int descriptor)
{
    const int fault = faultOf("lock");
    return fault ? fault : FileSystemCalls::lock(descriptor);
}

/// A close that fails has closed all the same.
int FaultyCalls::close(int descriptor)
{
    const int fault = faultOf("close");
    const int closed = FileSystemCalls::close(descriptor);
    --openDescriptors;
    return fault ? fault : closed;
}
