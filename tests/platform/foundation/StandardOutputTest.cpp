#include <platform/StandardOutput.h>
#include <support/TestMain.h>

#include <QFile>
#include <QStringList>
#include <QTemporaryFile>
#include <QTest>

#include <cstdio>
#include <mutex>
#include <thread>
#include <vector>

#include <unistd.h>

using namespace Qt::StringLiterals;

class StandardOutputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lineIsThereAsSoonAsItIsPrinted();
    void textIsWrittenAsUtf8();
    void lineBreaksInsideBecomeSpaces();
    void linesOfManyThreadsNeverMix();
    void observerSeesEveryLineUntilItIsRemoved();
};

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
} // namespace

void StandardOutputTest::lineIsThereAsSoonAsItIsPrinted()
{
    QByteArray written;
    {
        const Capture capture;
        printLine(u"No window open?"_s);
        written = capture.written();
    }
    QCOMPARE(written, QByteArray("No window open?\n"));
}

void StandardOutputTest::textIsWrittenAsUtf8()
{
    QByteArray written;
    {
        const Capture capture;
        printLine(u"Größe 映画"_s);
        written = capture.written();
    }
    QCOMPARE(written, QByteArray("Größe 映画\n"));
}

void StandardOutputTest::lineBreaksInsideBecomeSpaces()
{
    QByteArray written;
    {
        const Capture capture;
        printLine(u"Error: first\nsecond\r\nthird"_s);
        written = capture.written();
    }
    QCOMPARE(written, QByteArray("Error: first second  third\n"));
}

void StandardOutputTest::linesOfManyThreadsNeverMix()
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

void StandardOutputTest::observerSeesEveryLineUntilItIsRemoved()
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

PLOVENDIX_PLAIN_TEST(StandardOutputTest)
#include "StandardOutputTest.moc"
