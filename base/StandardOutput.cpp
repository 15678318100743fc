#include "StandardOutput.h"
#include "TerminalText.h"

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <utility>

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
constexpr qsizetype MaxWaitingBytes = 4LL * 1024 * 1024;

std::mutex observerMutex;
std::function<void(const QString &)> lineObserver;

/// The number of bytes that are done with: those written without waiting, or all when there is no reader.
qsizetype writtenAtOnce(int descriptor, bool isSocket, const QByteArray &text)
{
    qsizetype done = 0;
    while (done < text.size()) {
        const char *const rest = text.constData() + done;
        const auto size = static_cast<std::size_t>(text.size() - done);
        const ssize_t written = isSocket ? ::send(descriptor, rest, size, MSG_DONTWAIT | MSG_NOSIGNAL)
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
    struct stat status = {};
    ::fstat(descriptor, &status);
    if (S_ISSOCK(status.st_mode) || S_ISREG(status.st_mode))
        return writtenAtOnce(descriptor, S_ISSOCK(status.st_mode), text);
    // A pipe or terminal is opened again, because O_NONBLOCK belongs to the open file and would apply to
    // every process that shares it.
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(descriptor);
    const int second = ::open(path.constData(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (second < 0)
        return 0;
    const qsizetype written = writtenAtOnce(second, false, text);
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

/// Writes to standard output without waiting for a slow or absent reader: a thread of the queue writes the
/// rest, in order. The queue lives as long as the process, because that thread may be blocked in a write when
/// the process ends. Any thread.
class OutputQueue final
{
public:
    /// A text that would exceed the limit of queued bytes is dropped as a whole.
    void write(const QByteArray &text)
    {
        const std::scoped_lock lock(m_mutex);
        const bool isBehind = !m_waiting.isEmpty();
        if (isBehind && m_waiting.size() + text.size() > MaxWaitingBytes)
            return;
        const qsizetype written = isBehind ? 0 : writtenAtOnce(STDOUT_FILENO, text);
        if (written == text.size())
            return;
        m_waiting += text.mid(written);
        m_changed.notify_all();
        if (!std::exchange(m_hasThread, true))
            std::thread([this] { writeQueued(); }).detach();
    }

    /// Waits while the reader makes progress, and gives up when it takes no bytes within a moment.
    void drain()
    {
        std::unique_lock lock(m_mutex);
        bool isTaken = true;
        while (isTaken && !m_waiting.isEmpty()) {
            const qsizetype before = m_waiting.size();
            isTaken = m_changed.wait_for(lock, ReaderTimeout, [&] { return m_waiting.size() < before; });
        }
    }

private:
    void writeQueued()
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_changed.wait(lock, [this] { return !m_waiting.isEmpty(); });
            const QByteArray piece = m_waiting.left(PieceBytes);
            lock.unlock();
            const ssize_t written = writeWaiting(STDOUT_FILENO, piece);
            lock.lock();
            m_waiting.remove(0, written < 0 ? m_waiting.size() : written);
            m_changed.notify_all();
        }
    }

    std::mutex m_mutex; // guards the rest
    std::condition_variable m_changed;
    QByteArray m_waiting;
    bool m_hasThread = false;
};

OutputQueue &output()
{
    static OutputQueue *const queue = [] {
        std::atexit([] { output().drain(); });
        return new OutputQueue;
    }();
    return *queue;
}
} // namespace

void printLine(const QString &line)
{
    const QString text = terminalText(line);
    output().write(text.toUtf8() + '\n');
    const std::scoped_lock lock(observerMutex);
    if (lineObserver)
        lineObserver(text);
}

void ignoreBrokenPipes()
{
    std::signal(SIGPIPE, SIG_IGN);
}

void setPrintedLineObserver(std::function<void(const QString &)> observer)
{
    const std::scoped_lock lock(observerMutex);
    lineObserver = std::move(observer);
}
