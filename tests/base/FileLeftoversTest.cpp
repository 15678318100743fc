#include "MoveFixture.h"

#include <base/FileManager.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <functional>

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// Something may happen before each call that changes the disk.
class WatchedCalls final : public FaultyCalls
{
public:
    std::function<void(int change)> beforeChange; // counted from 1

protected:
    void beforeCall(const QString &call) override
    {
        static const QStringList reading{u"status"_s, u"statusOfOpen"_s, u"read"_s, u"lock"_s,
                                         u"duplicate"_s};
        if (beforeChange && !reading.contains(call))
            beforeChange(++m_changes);
    }

private:
    int m_changes = 0;
};
} // namespace

/// What is in a folder after a process died while it moved a file there, and after the next move.
class FileLeftoversTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_files.startAnew(); }

    void killedMoveLeavesNothingOrAllAndTheNextMoveClears_data() { MoveFixture::addDisks(); }

    void killedMoveLeavesNothingOrAllAndTheNextMoveClears()
    {
        QFETCH(Disk, disk);
        const QString next = m_files.folder + u"/there/Next.srt"_s;
        qsizetype leftovers = 0;
        int deaths = 0;
        for (m_files.writeSource(); dieBeforeChange(disk, deaths + 1); m_files.writeSource()) {
            ++deaths;
            const QByteArray there = m_files.read(m_files.destination);
            const QByteArray here = m_files.read(m_files.source);
            const QByteArray context = "killed before change " + QByteArray::number(deaths) + ": here " +
                                       here + ", there \"" + there + '"';
            QVERIFY2(there == "(nothing)" || there == "subtitle", context.constData());
            QVERIFY2(here == "subtitle" || there == "subtitle", context.constData());
            leftovers += m_files.namesIn(u"there"_s).filter(u".part"_s).size();
            QFile::remove(m_files.destination);
            m_files.writeSource();
            QVERIFY(move(m_files.callsFor(disk), next));
            QCOMPARE(m_files.namesIn(u"there"_s), QStringList{u"Next.srt"_s});
            QVERIFY(QFile::remove(next));
        }
        QVERIFY(deaths >= 1);
        QCOMPARE(leftovers > 0, disk.isOther);
        QCOMPARE(m_files.namesIn(u"there"_s), QStringList{u"Movie.en.srt"_s});
    }

    /// Another move into the folder comes before each change of this one.
    void moveUnderWayKeepsItsFile()
    {
        m_files.writeSource();
        const QUrl other = QUrl::fromLocalFile(m_files.folder + u"/there/Other.srt"_s);
        const QUrl otherSource = QUrl::fromLocalFile(m_files.folder + u"/here/other.srt"_s);
        const auto calls = m_files.callsFor<WatchedCalls>(Disk{true, true, true});
        int others = 0;
        calls->beforeChange = [&](int) {
            QFile::remove(other.toLocalFile());
            m_files.write(otherSource.toLocalFile(), "other");
            others += FileManager().moveItem(otherSource, other) ? 1 : 0;
        };
        const Result<void> moved = move(calls, m_files.destination);
        QVERIFY2(moved, moved ? "" : qPrintable(moved.error().localizedDescription));
        QVERIFY(others > 5);
        QCOMPARE(m_files.read(m_files.destination), QByteArray("subtitle"));
        QCOMPARE(m_files.namesIn(u"there"_s), (QStringList{u"Movie.en.srt"_s, u"Other.srt"_s}));
    }

    void otherThingsOfTheNameStay()
    {
        m_files.writeSource();
        const QString there = m_files.folder + u"/there/"_s;
        m_files.write(there + u".plovendix-notes"_s, "mine");
        m_files.write(there + u"plovendix-1.part"_s, "mine");
        m_files.write(there + u"film.part"_s, "mine");
        QVERIFY(QDir().mkpath(there + u".plovendix-folder.part"_s));
        const QString precious = m_files.write(m_files.folder + u"/precious"_s, "precious");
        QVERIFY(QFile::link(precious, there + u".plovendix-link.part"_s));
        QCOMPARE(::mkfifo(QFile::encodeName(there + u".plovendix-pipe.part"_s).constData(), 0600), 0);
        const QStringList before = m_files.namesIn(u"there"_s);
        QCOMPARE(before.size(), 6);
        QVERIFY(move(std::make_shared<FileSystemCalls>(), m_files.destination));
        const QStringList after = m_files.namesIn(u"there"_s);
        for (const QString &name : before)
            QVERIFY2(after.contains(name), qPrintable(name));
        QCOMPARE(m_files.read(precious), QByteArray("precious"));
    }

private:
    Result<void> move(const std::shared_ptr<FileSystemCalls> &calls, const QString &destination) const
    {
        return FileManager(calls).moveItem(QUrl::fromLocalFile(m_files.source),
                                           QUrl::fromLocalFile(destination));
    }
    /// Moves in a process that kills itself before the change of that number. False when there was none.
    bool dieBeforeChange(const Disk &disk, int number) const
    {
        const pid_t child = ::fork();
        if (child == 0) {
            const auto calls = m_files.callsFor<WatchedCalls>(disk);
            calls->beforeChange = [number](int change) {
                if (change == number)
                    ::kill(::getpid(), SIGKILL);
            };
            ::_exit(move(calls, m_files.destination) ? 0 : 1);
        }
        int status = 0;
        return ::waitpid(child, &status, 0) == child && WIFSIGNALED(status);
    }

    MoveFixture m_files;
};

PLOVENDIX_TEST(FileLeftoversTest)
#include "FileLeftoversTest.moc"
