#include "OutputQueue.h"

#include <cerrno>
#include <chrono>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace
{
constexpr auto ReaderTimeout = 200ms;
constexpr qsizetype PieceBytes = 4096; // a page of a pipe, so that each one a slow reader takes is seen

/// Reopens the pipe or terminal, because O_NONBLOCK belongs to the open file and would apply to every process
/// that shares it. Negative when that is not permitted.
int openedWithoutWaiting(int descriptor)
{
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(descriptor);
    return ::open(path.constData(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
}

enum class Kind
{
    File,
    Socket,
    PipeOrTerminal
};

Kind kindOf(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && S_ISSOCK(status.st_mode))
        return Kind::Socket;
    return S_ISREG(status.st_mode) ? Kind::File : Kind::PipeOrTerminal;
}

/// The number of bytes that are done with: those written without waiting, or all when there is no reader.
qsizetype writtenAtOnce(int descriptor, Kind kind, const QByteArray &text)
{
    qsizetype done = 0;
    while (done < text.size()) {
        const char *const rest = text.constData() + done;
        const auto size = static_cast<std::size_t>(text.size() - done);
        const ssize_t written = kind == Kind::Socket
                                    ? ::send(descriptor, rest, size, MSG_DONTWAIT | MSG_NOSIGNAL)
                                    : ::write(descriptor, rest, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return errno == EAGAIN ? done : text.size();
        done += written;
    }
    return done;
}

qsizetype writtenAtOnce(int descriptor, const QByteArray &text)
{
    const Kind kind = kindOf(descriptor);
    if (kind != Kind::PipeOrTerminal)
        return writtenAtOnce(descriptor, kind, text);
    const int second = openedWithoutWaiting(descriptor);
    if (second < 0)
        return 0;
    const qsizetype written = writtenAtOnce(second, kind, text);
    ::close(second);
    return written;
}

/// Writes some of the bytes and blocks as long as needed; negative when there is no reader.
ssize_t writeWaiting(int descriptor, const QByteArray &text)
{
    for (;;) {
        const ssize_t written = ::write(descriptor, text.constData(), static_cast<std::size_t>(text.size()));
        if (written >= 0 || (errno != EINTR && errno != EAGAIN))
            return written;
        pollfd room = {descriptor, POLLOUT, 0};
        ::poll(&room, 1, -1);
    }
}
} // namespace

OutputQueue::OutputQueue(int descriptor) : m_descriptor(descriptor) {}

void OutputQueue::write(const QByteArray &text)
{
    const std::scoped_lock lock(m_mutex);
    const bool isBehind = !m_waiting.isEmpty();
    if (isBehind && m_waiting.size() + text.size() > MaxWaitingBytes)
        return;
    const qsizetype written = isBehind ? 0 : writtenAtOnce(m_descriptor, text);
    if (written == text.size())
        return;
    m_waiting += text.mid(written);
    m_changed.notify_all();
    if (!m_hasThread)
        std::thread([this] { writeQueued(); }).detach();
    m_hasThread = true;
}

void OutputQueue::drain()
{
    std::unique_lock lock(m_mutex);
    while (!m_waiting.isEmpty()) {
        const qsizetype before = m_waiting.size();
        const bool wasTaken =
            m_changed.wait_for(lock, ReaderTimeout, [&] { return m_waiting.size() < before; });
        if (!wasTaken)
            return;
    }
}

qsizetype OutputQueue::waitingBytes()
{
    const std::scoped_lock lock(m_mutex);
    return m_waiting.size();
}

void OutputQueue::writeQueued()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return !m_waiting.isEmpty(); });
        const QByteArray piece = m_waiting.left(PieceBytes);
        lock.unlock();
        const ssize_t written = writeWaiting(m_descriptor, piece);
        lock.lock();
        if (written < 0)
            m_waiting.clear();
        else
            m_waiting.remove(0, written);
        m_changed.notify_all();
    }
}
