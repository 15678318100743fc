#include <base/StandardOutput.h>
#include <tests/support/TestMain.h>

#include <QStringList>
#include <QTemporaryFile>
#include <QTest>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// Sends standard output into a pipe, a pair of sockets or a file for one scope; the test is the reader.
class Piped final
{
public:
    enum class Kind
    {
        Pipe,
        Sockets,
        File
    };

    explicit Piped(Kind kind = Kind::Pipe)
    {
        std::fflush(stdout);
        m_before = ::dup(STDOUT_FILENO);
        std::array<int, 2> ends = {-1, -1};
        bool isMade = false;
        if (kind == Kind::Pipe)
            isMade = ::pipe(ends.data()) == 0;
        else if (kind == Kind::Sockets)
            isMade = ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) == 0;
        else if (m_file.open())
            isMade = (ends = {::open(m_file.fileName().toUtf8(), O_RDONLY), ::dup(m_file.handle())})[0] >= 0;
        if (!isMade || ::dup2(ends[1], STDOUT_FILENO) < 0)
            qFatal("Standard output cannot be piped");
        ::close(ends[1]);
        m_reader = ends[0];
    }
    ~Piped()
    {
        closeReader();
        ::dup2(m_before, STDOUT_FILENO);
        ::close(m_before);
    }
    Piped(const Piped &) = delete;
    Piped &operator=(const Piped &) = delete;

    void closeReader()
    {
        if (m_reader >= 0)
            ::close(m_reader);
        m_reader = -1;
    }
    /// Reads at least so many bytes, and on to such an end; less when nothing comes for ten seconds.
    QByteArray readUntil(const QByteArray &end, qsizetype atLeast = 0)
    {
        QByteArray text;
        std::array<char, 8192> buffer = {};
        while (text.size() < atLeast || !text.endsWith(end)) {
            pollfd ready = {m_reader, POLLIN, 0};
            const bool isReady = ::poll(&ready, 1, 10'000) > 0;
            const ssize_t size = isReady ? ::read(m_reader, buffer.data(), buffer.size()) : 0;
            if (size <= 0)
                break;
            text.append(buffer.data(), size);
        }
        return text;
    }

private:
    QTemporaryFile m_file;
    int m_before = -1;
    int m_reader = -1;
};

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

    QByteArray takePage() const
    {
        QByteArray page(PageBytes, '\0');
        return page.first(std::max<ssize_t>(::read(reader, page.data(), PageBytes), 0));
    }

    int reader = -1;
    int writer = -1;
};

/// The next thread then does not get the place of one that a fork left behind, which the thread sanitizer
/// takes for two threads of one name.
void useLargerStacks()
{
    pthread_attr_t attributes;
    ::pthread_attr_init(&attributes);
    ::pthread_attr_setstacksize(&attributes, std::size_t{64} * 1024 * 1024);
    ::pthread_setattr_default_np(&attributes);
    ::pthread_attr_destroy(&attributes);
}

QString numbered(int number)
{
    return u"%1 "_s.arg(number) + QString(200, u'x');
}
} // namespace

class StandardOutputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// The program has printed everything, and ends, before the reader takes the first of many pages. This
    /// test is the first, because a fork has no thread of the queue.
    void linesOfAProgramThatEndsReachALateReader()
    {
        constexpr int Lines = 200; // ten pages
        const SmallPipe pipe;
        const SmallPipe hasPrinted;
        const pid_t child = ::fork();
        if (child == 0) {
            useLargerStacks();
            std::atexit([] { ::_exit(0); }); // after the queue, before what judges threads a fork lacks
            ::dup2(pipe.writer, STDOUT_FILENO);
            for (int number = 0; number < Lines; ++number)
                printLine(numbered(number));
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
            QCOMPARE(lines.at(number), numbered(number).toUtf8());
    }

    void cleanLineIsThereAsSoonAsItIsPrinted_data() { kinds(); }

    void cleanLineIsThereAsSoonAsItIsPrinted()
    {
        QFETCH(Piped::Kind, kind);
        Piped piped(kind);
        printLine(u"Größe 映画: first\nsecond\u001b[2J"_s);
        QCOMPARE(piped.readUntil("\n"), QByteArray("Größe 映画: first second[2J\n"));
    }

    void brokenPipeDropsTheLines()
    {
        std::signal(SIGPIPE, SIG_DFL);
        ignoreBrokenPipes();
        {
            Piped piped;
            piped.closeReader();
            printLine(u"nobody reads this"_s);
        }
        Piped again;
        printLine(u"first"_s);
        printLine(u"second"_s);
        QCOMPARE(again.readUntil("second\n"), QByteArray("first\nsecond\n"));
    }

    void linesOfManyThreadsNeverMix()
    {
        constexpr int Threads = 6;
        constexpr int LinesEach = 100;
        Piped piped;
        std::vector<std::thread> threads;
        for (int index = 0; index < Threads; ++index) {
            threads.emplace_back([index] {
                for (int line = 0; line < LinesEach; ++line)
                    printLine(QString(200, QChar(u'a' + index)));
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        printLine(u"end"_s);
        QList<QByteArray> lines = piped.readUntil("\nend\n").trimmed().split('\n');
        QCOMPARE(lines.size(), Threads * LinesEach + 1);
        lines.removeLast();
        for (const QByteArray &line : std::as_const(lines))
            QCOMPARE(line, QByteArray(200, line.at(0)));
    }

    void observerSeesEveryLineUntilItIsRemoved()
    {
        QStringList seen;
        Piped piped;
        setPrintedLineObserver([&seen](const QString &line) { seen += line; });
        printLine(u"one"_s);
        printLine(u"two\nlines"_s);
        setPrintedLineObserver({});
        printLine(u"three"_s);
        QVERIFY(piped.readUntil("three\n").startsWith("one\n")); // so that none comes into the next pipe
        QCOMPARE(seen, (QStringList{u"one"_s, u"two lines"_s}));
    }

    void fullReaderDoesNotBlock_data() { kinds(); }

    void fullReaderDoesNotBlock()
    {
        QFETCH(Piped::Kind, kind);
        constexpr int Lines = 5000; // a pipe holds about 300 of them
        Piped piped(kind);
        for (int number = 0; number < Lines; ++number)
            printLine(numbered(number));
        printLine(u"end"_s);
        const QByteArrayList lines = piped.readUntil("\nend\n").split('\n');
        QCOMPARE(lines.size(), Lines + 2);
        for (int number = 0; number < Lines; ++number)
            QCOMPARE(lines.at(number), numbered(number).toUtf8());
    }

    void whatAReaderNeverTakesIsBounded()
    {
        constexpr int Lines = 30'000; // six million bytes
        Piped piped;
        for (int number = 0; number < Lines; ++number)
            printLine(numbered(number));
        QByteArray text = piped.readUntil({}, 4'000'000);
        printLine(u"end"_s); // there is room again
        text += piped.readUntil("end\n");
        const QByteArrayList lines = text.trimmed().split('\n');
        QVERIFY(lines.size() > 20'000 && lines.size() < 21'000);
        for (int number = 0; number < 20'000; ++number)
            QCOMPARE(lines.at(number), numbered(number).toUtf8());
        QCOMPARE(lines.constLast(), QByteArray("end"));
    }

    /// Each page that a slow reader takes makes room for one more line, while the others still wait.
    void everyPageThatIsTakenLeavesTheQueue()
    {
        constexpr int Lines = 1030; // of a page each, a few more than the pipe and the queue hold
        QByteArrayList added;
        QByteArray text;
        {
            Piped piped;
            QCOMPARE(::fcntl(STDOUT_FILENO, F_SETPIPE_SZ, PageBytes), PageBytes);
            for (int number = 0; number < Lines; ++number)
                printLine(QString(PageBytes - 1, u'x'));
            text = piped.readUntil({}, PageBytes) + piped.readUntil({}, PageBytes);
            while (added.size() < 10) {
                text += piped.readUntil({}, PageBytes); // the page before it has left the queue
                added += QByteArray::number(added.size()).leftJustified(PageBytes - 1, 'y');
                printLine(QString::fromUtf8(added.constLast()));
            }
            text += piped.readUntil(added.constLast() + '\n');
        }
        const QByteArrayList lines = text.trimmed().split('\n');
        QVERIFY(lines.size() < Lines + added.size()); // some found no room before
        QCOMPARE(lines.mid(lines.size() - added.size()), added);
    }

private:
    static void kinds()
    {
        QTest::addColumn<Piped::Kind>("kind");
        QTest::newRow("pipe") << Piped::Kind::Pipe;
        QTest::newRow("socket") << Piped::Kind::Sockets;
        QTest::newRow("file") << Piped::Kind::File;
    }
};

PLOVENDIX_PLAIN_TEST(StandardOutputTest)
#include "StandardOutputTest.moc"
