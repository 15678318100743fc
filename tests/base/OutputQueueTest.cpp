#include <base/OutputQueue.h>
#include <base/StandardOutput.h>
#include <tests/support/TestMain.h>

#include <QTest>

#include <array>
#include <cstdlib>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr int PageBytes = 4096;

/// A pipe that holds one page.
struct SmallPipe
{
    SmallPipe()
    {
        std::array<int, 2> ends = {};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0 || ::fcntl(ends[1], F_SETPIPE_SZ, PageBytes) != PageBytes)
            qFatal("No pipe of one page could be made");
        reader = ends[0];
        writer = ends[1];
    }
    ~SmallPipe() { ::close(reader); }
    SmallPipe(const SmallPipe &) = delete;
    SmallPipe &operator=(const SmallPipe &) = delete;

    bool isFull() const
    {
        int bytes = 0;
        return ::ioctl(reader, FIONREAD, &bytes) == 0 && bytes == PageBytes;
    }
    QByteArray takePage() const
    {
        std::array<char, PageBytes> page = {};
        const ssize_t size = ::read(reader, page.data(), page.size());
        return {page.data(), std::max<ssize_t>(size, 0)};
    }

    int reader = -1;
    int writer = -1;
};

QString line(int number)
{
    return u"%1 "_s.arg(number, 6, 10, QChar(u'0')) + QString(92, u'x');
}
} // namespace

/// What is still queued while the reader takes a little at a time.
class OutputQueueTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { ignoreBrokenPipes(); }

    void everyPageThatIsTakenLeavesTheQueue()
    {
        constexpr int Pages = 32;
        const SmallPipe pipe;
        // Its thread waits in a write for as long as the process lives, and so does the queue.
        static OutputQueue *const queue = new OutputQueue(pipe.writer);
        queue->write(QByteArray(Pages * PageBytes, 'x'));
        for (int page = 1; page < Pages - 1; ++page) {
            QTRY_VERIFY(pipe.isFull());
            QCOMPARE(queue->waitingBytes(), (Pages - page) * PageBytes);
            QCOMPARE(pipe.takePage(), QByteArray(PageBytes, 'x'));
            QTRY_COMPARE(queue->waitingBytes(), (Pages - page - 1) * PageBytes);
        }
    }

    /// The program has printed everything, and ends, before the reader takes the first of many pages.
    void linesOfAProgramThatEndsReachASlowReader()
    {
        constexpr int Lines = 3000; // of a hundred bytes each
        const SmallPipe pipe;
        const SmallPipe hasPrinted;
        const pid_t child = ::fork();
        if (child == 0) {
            std::atexit(
                [] { ::_exit(0); }); // after the queue, before what judges the threads that a fork lacks
            ::dup2(pipe.writer, STDOUT_FILENO);
            for (int number = 0; number < Lines; ++number)
                printLine(line(number));
            ::close(hasPrinted.writer);
            std::exit(0);
        }
        ::close(pipe.writer);
        ::close(hasPrinted.writer);
        QCOMPARE(hasPrinted.takePage(), QByteArray());
        QByteArray text;
        for (QByteArray page = pipe.takePage(); !page.isEmpty(); page = pipe.takePage())
            text += page;
        int status = -1;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QCOMPARE(status, 0);
        const QByteArrayList lines = text.split('\n');
        QCOMPARE(lines.size(), Lines + 1);
        for (int number = 0; number < Lines; ++number)
            QCOMPARE(lines.at(number), line(number).toUtf8());
    }
};

PLOVENDIX_PLAIN_TEST(OutputQueueTest)
#include "OutputQueueTest.moc"
