#include "MoveFixture.h"

#include <base/FileManager.h>
#include <tests/support/FaultyCalls.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <cerrno>

#include <tests/support/TestMain.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// Moves on file systems of every kind, with every call failing in turn.
class FileMoveTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_files.startAnew(); }

    void fileIsMoved_data() { disks(); }

    void fileIsMoved()
    {
        QFETCH(Disk, disk);
        m_files.writeSource();
        const auto calls = m_files.callsFor(disk);
        const Result<void> result = m_files.move(calls);
        QVERIFY2(result, result ? "" : qPrintable(result.error().localizedDescription));
        QCOMPARE(m_files.namesIn(u"here"_s), QStringList());
        QCOMPARE(m_files.namesIn(u"there"_s), QStringList{u"Movie.en.srt"_s});
        QCOMPARE(m_files.read(m_files.destination), QByteArray("subtitle"));
        QCOMPARE(calls->openDescriptors, 0);
    }

    void existingFileIsNeverReplaced_data() { disks(); }

    void existingFileIsNeverReplaced()
    {
        QFETCH(Disk, disk);
        m_files.writeSource();
        m_files.write(m_files.destination, "older");
        const Result<void> result = m_files.move(m_files.callsFor(disk));
        QVERIFY(!result);
        QCOMPARE(result.error().domain, u"FileManager"_s);
        QCOMPARE(result.error().code, EEXIST);
        QCOMPARE(
            result.error().localizedDescription,
            u"“download.srt” could not be moved to “Movie.en.srt” because a file with that name already exists in “%1”."_s
                .arg(m_files.folder + u"/there"_s));
        QCOMPARE(m_files.read(m_files.source), QByteArray("subtitle"));
        QCOMPARE(m_files.read(m_files.destination), QByteArray("older"));
        QCOMPARE(m_files.namesIn(u"there"_s), QStringList{u"Movie.en.srt"_s});
    }

    void danglingLinkAtTheDestinationIsNotReplaced_data() { disks(); }

    void danglingLinkAtTheDestinationIsNotReplaced()
    {
        QFETCH(Disk, disk);
        m_files.writeSource();
        QVERIFY(QFile::link(m_files.folder + u"/nowhere"_s, m_files.destination));
        const Result<void> result = m_files.move(m_files.callsFor(disk));
        QVERIFY(!result);
        QCOMPARE(result.error().code, EEXIST);
        QVERIFY(QFileInfo(m_files.destination).isSymLink());
        QVERIFY(!QFileInfo::exists(m_files.folder + u"/nowhere"_s));
        QCOMPARE(m_files.read(m_files.source), QByteArray("subtitle"));
    }

    void missingSourceIsSaid_data() { disks(); }

    void missingSourceIsSaid()
    {
        QFETCH(Disk, disk);
        const Result<void> result = m_files.move(m_files.callsFor(disk));
        QVERIFY(!result);
        QCOMPARE(result.error().code, ENOENT);
        QCOMPARE(result.error().localizedDescription,
                 u"“download.srt” could not be moved because it no longer exists."_s);
        QCOMPARE(m_files.namesIn(u"there"_s), QStringList());
    }

    void missingFolderIsSaid_data() { disks(); }

    void missingFolderIsSaid()
    {
        QFETCH(Disk, disk);
        m_files.writeSource();
        QVERIFY(QDir().rmdir(m_files.folder + u"/there"_s));
        const Result<void> result = m_files.move(m_files.callsFor(disk));
        QVERIFY(!result);
        QCOMPARE(result.error().code, ENOENT);
        QCOMPARE(result.error().localizedDescription,
                 u"“download.srt” could not be moved to “%1” because that folder does not exist."_s.arg(
                     m_files.folder + u"/there"_s));
        QCOMPARE(m_files.read(m_files.source), QByteArray("subtitle"));
    }

    void anyFailingCallLeavesAllWell_data() { disks(); }

    void anyFailingCallLeavesAllWell()
    {
        QFETCH(Disk, disk);
        m_files.writeSource();
        const auto counting = m_files.callsFor(disk);
        QVERIFY(m_files.move(counting));
        const qsizetype steps = counting->made.size();
        int failures = 0;
        for (int step = 1; step <= steps; ++step) {
            for (const int code : {ENOSPC, EROFS, EIO, EACCES, EDQUOT}) {
                QFile::remove(m_files.destination);
                m_files.writeSource();
                const auto calls = m_files.callsFor(disk);
                calls->failingCall = step;
                calls->failure = code;
                const Result<void> result = m_files.move(calls);
                const QByteArray context =
                    calls->made.value(step - 1).toLatin1() + " " + QByteArray::number(code);
                QVERIFY2(calls->openDescriptors == 0, context.constData());
                if (result) {
                    QVERIFY2(m_files.read(m_files.destination) == "subtitle", context.constData());
                    QVERIFY2(m_files.namesIn(u"there"_s).size() == 1, context.constData());
                    continue;
                }
                ++failures;
                QCOMPARE(result.error().code, code);
                QVERIFY2(m_files.read(m_files.source) == "subtitle", context.constData());
                QVERIFY2(m_files.namesIn(u"there"_s).isEmpty(), context.constData());
            }
        }
        QVERIFY(failures >= 5);
    }

    void fileThatAppearsMeanwhileIsNotReplaced()
    {
        class Meddling final : public FileSystemCalls
        {
        public:
            explicit Meddling(const QString &path) : m_path(path) {}
            int renameWithoutReplacing(const QByteArray &from, const QByteArray &to) override
            {
                if (from.endsWith("download.srt"))
                    return -EXDEV;
                QFile file(m_path);
                if (file.open(QIODevice::WriteOnly))
                    file.write("faster");
                return FileSystemCalls::renameWithoutReplacing(from, to);
            }

        private:
            QString m_path;
        };
        m_files.writeSource();
        FileManager manager(std::make_shared<Meddling>(m_files.destination));
        const Result<void> result =
            manager.moveItem(QUrl::fromLocalFile(m_files.source), QUrl::fromLocalFile(m_files.destination));
        QVERIFY(!result);
        QCOMPARE(result.error().code, EEXIST);
        QCOMPARE(m_files.read(m_files.destination), QByteArray("faster"));
        QCOMPARE(m_files.namesIn(u"there"_s), QStringList{u"Movie.en.srt"_s});
        QCOMPARE(m_files.read(m_files.source), QByteArray("subtitle"));
    }

    void copyKeepsModeTimeAndContent()
    {
        QByteArray content;
        for (int number = 0; number < 200'000; ++number)
            content += QByteArray::number(number);
        m_files.writeSource(content);
        const QDateTime time(QDate(2020, 2, 3), QTime(4, 5, 6), Qt::UTC);
        {
            QFile file(m_files.source);
            QVERIFY(file.open(QIODevice::ReadWrite));
            QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
        }
        QCOMPARE(::chmod(QFile::encodeName(m_files.source).constData(), 0640), 0);
        QVERIFY(m_files.move(m_files.callsFor(Disk{true, true, true})));
        QCOMPARE(m_files.read(m_files.destination), content);
        struct stat status = {};
        QCOMPARE(::stat(QFile::encodeName(m_files.destination).constData(), &status), 0);
        QCOMPARE(status.st_mode & 07777, 0640U);
        QCOMPARE(QFileInfo(m_files.destination).lastModified(), time);
    }

    void shortAndInterruptedWritesAreContinued()
    {
        const QByteArray content = QByteArray("0123456789").repeated(100);
        m_files.writeSource(content);
        const auto calls = m_files.callsFor(Disk{true, true, true});
        calls->writesAtMost = 7;
        QVERIFY(m_files.move(calls));
        QCOMPARE(m_files.read(m_files.destination), content);
    }

    void emptyFileIsCopied()
    {
        m_files.writeSource("");
        QVERIFY(m_files.move(m_files.callsFor(Disk{true, true, true})));
        QCOMPARE(m_files.read(m_files.destination), QByteArray());
        QVERIFY(!QFileInfo::exists(m_files.source));
    }

    void fileSystemWithoutModesOrFlushingIsFine()
    {
        for (const QString &name : {u"setMode"_s, u"setTimes"_s, u"flush"_s}) {
            QFile::remove(m_files.destination);
            m_files.writeSource();
            const auto calls = m_files.callsFor(Disk{true, true, true});
            calls->failingName = name;
            calls->failure = name == u"flush" ? EINVAL : EPERM;
            QVERIFY2(m_files.move(calls), qPrintable(name));
            QVERIFY(calls->made.contains(name));
            QCOMPARE(m_files.read(m_files.destination), QByteArray("subtitle"));
        }
    }

    void sourceThatCannotBeRemovedLeavesBothAfterACopy()
    {
        m_files.writeSource();
        const auto calls = m_files.callsFor(Disk{true, true, true});
        calls->failingName = u"unlink"_s;
        calls->failure = EROFS;
        QVERIFY(m_files.move(calls));
        QCOMPARE(m_files.read(m_files.source), QByteArray("subtitle"));
        QCOMPARE(m_files.read(m_files.destination), QByteArray("subtitle"));
    }

    void sourceThatCannotBeRemovedUndoesALink()
    {
        m_files.writeSource();
        const auto calls = m_files.callsFor(Disk{false, false, true});
        // Status, rename, link, and then the removal of the first name.
        calls->failingCall = 4;
        calls->failure = EPERM;
        const Result<void> result = m_files.move(calls);
        QCOMPARE(calls->made.value(3), u"unlink"_s);
        QVERIFY(!result);
        QCOMPARE(result.error().code, EPERM);
        QCOMPARE(m_files.read(m_files.source), QByteArray("subtitle"));
        QVERIFY(!QFileInfo::exists(m_files.destination));
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

    MoveFixture m_files;
};

PLOVENDIX_TEST(FileMoveTest)
#include "FileMoveTest.moc"
