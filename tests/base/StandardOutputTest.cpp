#include <base/StandardOutput.h>
#include <tests/support/TestMain.h>

#include <QFile>
#include <QStringList>
#include <QTemporaryFile>
#include <QTest>

#include <array>
#include <csignal>
#include <cstdio>
#include <mutex>
#include <thread>
#include <vector>

#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// Sends standard output to a file for one scope.
class Capture final
{
public:
    Capture()
    {
        std::fflush(stdout);
        m_before = ::dup(STDOUT_FILENO);
        if (!m_file.open() || ::dup2(m_file.handle(), STDOUT_FILENO) < 0)
            qFatal("Standard output cannot be captured");
    }
    ~Capture()
    {
        std::fflush(stdout);
        ::dup2(m_before, STDOUT_FILENO);
        ::close(m_before);
    }
    Capture(const Capture &) = delete;
    Capture &operator=(const Capture &) = delete;

    QByteArray written() const
    {
        QFile file(m_file.fileName());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryFile m_file;
    int m_before = -1;
};

/// Sends standard output into a pipe or a pair of sockets for one scope; the test is the reader.
class Piped final
{
public:
    enum class Kind
    {
        Pipe,
        Sockets
    };

    explicit Piped(Kind kind = Kind::Pipe)
    {
        std::array<int, 2> ends = {};
        std::fflush(stdout);
        m_before = ::dup(STDOUT_FILENO);
        const bool isMade = kind == Kind::Pipe ? ::pipe(ends.data()) == 0
                                               : ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) == 0;
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
    /// Reads at least so many bytes, and on to such an end.
    QByteArray readUntil(const QByteArray &end, qsizetype atLeast = 0)
    {
        QByteArray text;
        std::array<char, 8192> buffer = {};
        while (text.size() < atLeast || !text.endsWith(end)) {
            const ssize_t size = ::read(m_reader, buffer.data(), buffer.size());
            if (size <= 0)
                break;
            text.append(buffer.data(), size);
        }
        return text;
    }

private:
    int m_before = -1;
    int m_reader = -1;
};

QString numbered(int number)
{
    return u"%1 "_s.arg(number) + QString(200, u'x');
}
} // namespace

class StandardOutputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lineIsThereAsSoonAsItIsPrinted()
    {
        QByteArray written;
        {
            const Capture capture;
            printLine(u"No window open?"_s);
            written = capture.written();
        }
        QCOMPARE(written, QByteArray("No window open?\n"));
    }

    void textIsWrittenAsUtf8()
    {
        QByteArray written;
        {
            const Capture capture;
            printLine(u"Größe 映画"_s);
            written = capture.written();
        }
        QCOMPARE(written, QByteArray("Größe 映画\n"));
    }

    void lineBreaksInsideBecomeSpaces()
    {
        QByteArray written;
        {
            const Capture capture;
            printLine(u"Error: first\nsecond\r\nthird"_s);
            written = capture.written();
        }
        QCOMPARE(written, QByteArray("Error: first second  third\n"));
    }

    void linesOfManyThreadsNeverMix()
    {
        constexpr int Threads = 6;
        constexpr int LinesEach = 100;
        QByteArray written;
        {
            const Capture capture;
            std::vector<std::thread> threads;
            for (int index = 0; index < Threads; ++index) {
                threads.emplace_back([index] {
                    for (int line = 0; line < LinesEach; ++line)
                        printLine(QString(200, QChar(u'a' + index)));
                });
            }
            for (std::thread &thread : threads)
                thread.join();
            written = capture.written();
        }
        const QList<QByteArray> lines = written.trimmed().split('\n');
        QCOMPARE(lines.size(), Threads * LinesEach);
        for (const QByteArray &line : lines)
            QCOMPARE(line, QByteArray(200, line.at(0)));
    }

    void observerSeesEveryLineUntilItIsRemoved()
    {
        QStringList seen;
        {
            const Capture capture;
            setPrintedLineObserver([&seen](const QString &line) { seen += line; });
            printLine(u"one"_s);
            printLine(u"two\nlines"_s);
            setPrintedLineObserver({});
            printLine(u"three"_s);
        }
        QCOMPARE(seen, (QStringList{u"one"_s, u"two lines"_s}));
    }

    void controlCharactersAreLeftOut()
    {
        QByteArray written;
        {
            const Capture capture;
            printLine(u"Error: \u001b[2J\u0007\u202etxt"_s);
            written = capture.written();
        }
        QCOMPARE(written, QByteArray("Error: [2Jtxt\n"));
    }

    void fullPipeDoesNotBlock()
    {
        constexpr int Lines = 5000; // a pipe holds about 300 of them
        Piped piped;
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

    void fullSocketDoesNotBlock()
    {
        constexpr int Lines = 5000;
        Piped piped(Piped::Kind::Sockets);
        for (int number = 0; number < Lines; ++number)
            printLine(numbered(number));
        printLine(u"end"_s);
        QCOMPARE(piped.readUntil("\nend\n").count('\n'), Lines + 1);
    }
};

PLOVENDIX_PLAIN_TEST(StandardOutputTest)
#include "StandardOutputTest.moc"
