#include "MoveFixture.h"

#include <base/FileManager.h>
#include <tests/support/FaultyCalls.h>
#include <tests/support/TestMain.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// Moves on file systems of every kind, with every call failing in turn.
class FileMoveTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_files.startAnew(); }

    void fileIsMoved_data() { MoveFixture::addDisks(); }

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

    void existingItemIsNeverReplaced_data() { MoveFixture::addDisks(); }

    void existingItemIsNeverReplaced()
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
        QCOMPARE(m_files.read(m_files.destination), QByteArray("older"));
        // A dangling link is an item, too.
        QVERIFY(QFile::remove(m_files.destination));
        QVERIFY(QFile::link(m_files.folder + u"/nowhere"_s, m_files.destination));
        const Result<void> again = m_files.move(m_files.callsFor(disk));
        QVERIFY(!again);
        QCOMPARE(again.error().code, EEXIST);
        QVERIFY(QFileInfo(m_files.destination).isSymLink());
        QCOMPARE(m_files.read(m_files.source), QByteArray("subtitle"));
        QCOMPARE(m_files.namesIn(u"there"_s), QStringList{u"Movie.en.srt"_s});
    }

    void missingSourceAndFolderAreSaid_data() { MoveFixture::addDisks(); }

    void missingSourceAndFolderAreSaid()
    {
        QFETCH(Disk, disk);
        const Result<void> noSource = m_files.move(m_files.callsFor(disk));
        QVERIFY(!noSource);
        QCOMPARE(noSource.error().code, ENOENT);
        QCOMPARE(noSource.error().localizedDescription,
                 u"“download.srt” could not be moved because it no longer exists."_s);
        m_files.writeSource();
        QVERIFY(QDir().rmdir(m_files.folder + u"/there"_s));
        const Result<void> noFolder = m_files.move(m_files.callsFor(disk));
        QVERIFY(!noFolder);
        QCOMPARE(noFolder.error().code, ENOENT);
        QCOMPARE(noFolder.error().localizedDescription,
                 u"“download.srt” could not be moved to “%1” because that folder does not exist."_s.arg(
                     m_files.folder + u"/there"_s));
        QCOMPARE(m_files.read(m_files.source), QByteArray("subtitle"));
    }

    void anyFailingCallLeavesAllWell_data() { MoveFixture::addDisks(); }

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
        class Meddling final : public FaultyCalls
        {
        public:
            QString path;

        protected:
            void beforeCall(const QString &call) override
            {
                QFile file(path);
                if (call == u"close" && file.open(QIODevice::WriteOnly))
                    file.write("faster");
            }
        };
        m_files.writeSource();
        const auto calls = m_files.callsFor<Meddling>(Disk{true, true, true});
        calls->path = m_files.destination;
        const Result<void> result = m_files.move(calls);
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
        for (const QByteArray &content : {QByteArray("0123456789").repeated(100), QByteArray()}) {
            QFile::remove(m_files.destination);
            m_files.writeSource(content);
            const auto calls = m_files.callsFor(Disk{true, true, true});
            calls->writesAtMost = 7;
            QVERIFY(m_files.move(calls));
            QCOMPARE(m_files.read(m_files.destination), content);
        }
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

    void sourceThatCannotBeRemovedUndoesALinkButNoCopy()
    {
        m_files.writeSource();
        const auto linking = m_files.callsFor(Disk{false, false, true});
        linking->failingCall = 4; // after status, rename and link, the removal of the first name
        linking->failure = EPERM;
        const Result<void> linked = m_files.move(linking);
        QCOMPARE(linking->made.value(3), u"unlink"_s);
        QVERIFY(!linked);
        QCOMPARE(linked.error().code, EPERM);
        QCOMPARE(m_files.read(m_files.source), QByteArray("subtitle"));
        QVERIFY(!QFileInfo::exists(m_files.destination));
        const auto copying = m_files.callsFor(Disk{true, true, true});
        copying->failingName = u"unlink"_s;
        copying->failure = EROFS;
        QVERIFY(m_files.move(copying));
        QCOMPARE(m_files.read(m_files.source), QByteArray("subtitle"));
        QCOMPARE(m_files.read(m_files.destination), QByteArray("subtitle"));
    }

    void namesThatAreNoTextSurvive()
    {
        const QByteArray folder = QFile::encodeName(m_files.folder);
        const QByteArray source = folder + "/here/f\xfcr.srt";
        const QByteArray destination = folder + "/there/\xff\xfe \xe2\x82.srt";
        FileSystemCalls calls;
        calls.close(calls.open(source, O_WRONLY | O_CREAT, 0600));
        struct stat status = {};
        QCOMPARE(calls.status(source, status), 0);
        for (const Disk &disk : {Disk{}, Disk{true, true, true}}) {
            FileManager manager(m_files.callsFor(disk));
            const Result<void> moved = manager.moveItem(FileManager::urlFromFileSystemPath(source),
                                                        FileManager::urlFromFileSystemPath(destination));
            QVERIFY(moved);
            QCOMPARE(calls.status(destination, status), 0);
            QCOMPARE(calls.status(source, status), -ENOENT);
            QCOMPARE(calls.renameWithoutReplacing(destination, source), 0);
        }
    }

    void sentenceSaysWhatAndWhere_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("reason");
        QTest::newRow("full") << ENOSPC << u"there is not enough free space"_s;
        QTest::newRow("quota") << EDQUOT << u"there is not enough free space"_s;
        QTest::newRow("access") << EACCES << u"you do not have the permission"_s;
        QTest::newRow("permission") << EPERM << u"you do not have the permission"_s;
        QTest::newRow("read-only") << EROFS << u"the disk can only be read"_s;
        QTest::newRow("no folder") << ENOTDIR << u"that is not a folder"_s;
        QTest::newRow("too large") << EFBIG << u"it is too large for that disk"_s;
        QTest::newRow("other") << EIO << u"of an error of the system: %1"_s.arg(qt_error_string(EIO));
    }

    void sentenceSaysWhatAndWhere()
    {
        QFETCH(int, code);
        QFETCH(QString, reason);
        m_files.source = m_files.folder + u"/here/100% %2$@.srt"_s;
        m_files.writeSource();
        const auto calls = m_files.callsFor(Disk{});
        calls->failingName = u"renameWithoutReplacing"_s;
        calls->failure = code;
        const Result<void> result = m_files.move(calls);
        QVERIFY(!result);
        QCOMPARE(result.error().code, code);
        QCOMPARE(result.error().localizedDescription, u"“100% %2$@.srt” could not be moved to “"_s +
                                                          m_files.folder + u"/there” because "_s + reason +
                                                          u'.');
    }

private:
    MoveFixture m_files;
};

PLOVENDIX_TEST(FileMoveTest)
#include "FileMoveTest.moc"
