#include "MoveFixture.h"

#include <base/FileManager.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <array>
#include <cerrno>
#include <functional>
#include <utility>

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// A destination on another disk, on a file system that allows as much as the test says. Before each change
/// of the disk something may happen.
class WatchedCalls final : public FileSystemCalls
{
public:
    explicit WatchedCalls(const Disk &disk) : m_disk(disk) {}

    std::function<void(int change)> beforeChange; // counted from 1

    int renameWithoutReplacing(const QByteArray &from, const QByteArray &to) override
    {
        count();
        if (isBetweenDisks(from))
            return -EXDEV;
        return m_disk.canRefuseToReplace ? FileSystemCalls::renameWithoutReplacing(from, to) : -EINVAL;
    }
    int rename(const QByteArray &from, const QByteArray &to) override
    {
        count();
        return isBetweenDisks(from) ? -EXDEV : FileSystemCalls::rename(from, to);
    }
    int link(const QByteArray &from, const QByteArray &to) override
    {
        count();
        if (isBetweenDisks(from))
            return -EXDEV;
        return m_disk.canLink ? FileSystemCalls::link(from, to) : -EPERM;
    }
    int unlink(const QByteArray &path) override
    {
        count();
        return FileSystemCalls::unlink(path);
    }
    int open(const QByteArray &path, int flags, mode_t mode) override
    {
        count();
        return FileSystemCalls::open(path, flags, mode);
    }
    ssize_t write(int descriptor, const char *bytes, std::size_t size) override
    {
        count();
        return FileSystemCalls::write(descriptor, bytes, size);
    }
    int flush(int descriptor) override
    {
        count();
        return FileSystemCalls::flush(descriptor);
    }
    int close(int descriptor) override
    {
        count();
        return FileSystemCalls::close(descriptor);
    }

private:
    bool isBetweenDisks(const QByteArray &from) const { return m_disk.isOther && from.contains("/here/"); }
    void count()
    {
        if (beforeChange)
            beforeChange(++m_changes);
    }

    Disk m_disk;
    int m_changes = 0;
};
} // namespace

/// What is in a folder after a process died while it moved a file there, and after the next move.
class FileLeftoversTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_files.startAnew(); }

    void killedMoveLeavesNothingOrAllUnderTheName_data() { disks(); }

    void killedMoveLeavesNothingOrAllUnderTheName()
    {
        QFETCH(Disk, disk);
        m_files.writeSource();
        int deaths = 0;
        while (dieBeforeChange(disk, deaths + 1)) {
            ++deaths;
            const QByteArray there = m_files.read(m_files.destination);
            const QByteArray here = m_files.read(m_files.source);
            const QByteArray context = "killed before change " + QByteArray::number(deaths) + ": here " +
                                       here + ", there \"" + there + '"';
            QVERIFY2(there == "(nothing)" || there == "subtitle", context.constData());
            QVERIFY2(here == "subtitle" || there == "subtitle", context.constData());
            QFile::remove(m_files.destination);
            m_files.writeSource();
        }
        QVERIFY(deaths >= 1);
        QCOMPARE(m_files.namesIn(u"there"_s), QStringList{u"Movie.en.srt"_s});
    }

    void leftoversGoWithTheNextMove_data() { disks(); }

    void leftoversGoWithTheNextMove()
    {
        QFETCH(Disk, disk);
        m_files.writeSource();
        int leftovers = 0;
        for (int change = 1; dieBeforeChange(disk, change); ++change) {
            leftovers += static_cast<int>(m_files.namesIn(u"there"_s).filter(u".part"_s).size());
            QFile::remove(m_files.destination);
            m_files.writeSource();
            QVERIFY(move(std::make_shared<WatchedCalls>(disk), m_files.folder + u"/there/Next.srt"_s));
            QCOMPARE(m_files.namesIn(u"there"_s), QStringList{u"Next.srt"_s});
            QFile::remove(m_files.folder + u"/there/Next.srt"_s);
            m_files.writeSource();
        }
        QCOMPARE(leftovers > 0, disk.isOther);
    }

    /// Another move into the folder comes before each change of this one.
    void moveUnderWayKeepsItsFile()
    {
        m_files.writeSource();
        const QUrl other = QUrl::fromLocalFile(m_files.folder + u"/there/Other.srt"_s);
        const QUrl otherSource = QUrl::fromLocalFile(m_files.folder + u"/here/other.srt"_s);
        const auto calls = std::make_shared<WatchedCalls>(Disk{true, true, true});
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

    void moveOfAnotherProcessKeepsItsFile()
    {
        m_files.writeSource();
        std::array<int, 2> begun = {};
        std::array<int, 2> goOn = {};
        QCOMPARE(::pipe(begun.data()), 0);
        QCOMPARE(::pipe(goOn.data()), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            const auto calls = std::make_shared<WatchedCalls>(Disk{true, true, true});
            bool hasTold = false;
            calls->beforeChange = [&](int) {
                const bool isUnderWay = !m_files.namesIn(u"there"_s).filter(u".part"_s).isEmpty();
                char sign = 0;
                if (isUnderWay && !std::exchange(hasTold, true) &&
                    (::write(begun[1], "b", 1) != 1 || ::read(goOn[0], &sign, 1) != 1))
                    ::_exit(2);
            };
            ::_exit(move(calls, m_files.destination) ? 0 : 1);
        }
        ::close(begun[1]);
        ::close(goOn[0]);
        char sign = 0;
        QCOMPARE(::read(begun[0], &sign, 1), 1);
        const QStringList before = m_files.namesIn(u"there"_s);
        QCOMPARE(before.size(), 1);
        m_files.write(m_files.folder + u"/here/other.srt"_s, "other");
        QVERIFY(FileManager().moveItem(QUrl::fromLocalFile(m_files.folder + u"/here/other.srt"_s),
                                       QUrl::fromLocalFile(m_files.folder + u"/there/Other.srt"_s)));
        QCOMPARE(m_files.namesIn(u"there"_s), before + QStringList{u"Other.srt"_s});
        QCOMPARE(::write(goOn[1], "g", 1), 1);
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 0);
        ::close(begun[0]);
        ::close(goOn[1]);
        QCOMPARE(m_files.read(m_files.destination), QByteArray("subtitle"));
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
    void disks() const
    {
        QTest::addColumn<Disk>("disk");
        QTest::newRow("one disk") << Disk{};
        QTest::newRow("one disk that cannot refuse to replace") << Disk{false, false, true};
        QTest::newRow("one disk that can neither refuse nor link") << Disk{false, false, false};
        QTest::newRow("two disks") << Disk{true, true, true};
        QTest::newRow("two disks that cannot refuse to replace") << Disk{true, false, true};
        QTest::newRow("two disks that can neither refuse nor link") << Disk{true, false, false};
    }
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
            const auto calls = std::make_shared<WatchedCalls>(disk);
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
