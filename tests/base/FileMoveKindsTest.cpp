#include "MoveFixture.h"

#include <base/FileManager.h>
#include <tests/support/FaultyCalls.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <cerrno>

#include <fcntl.h>
#include <tests/support/TestMain.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// Moves of other things than plain files, under names of every kind, and what is said of failures.
class FileMoveKindsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_files.startAnew(); }

    void folderIsMoved_data()
    {
        QTest::addColumn<Disk>("disk");
        QTest::newRow("can refuse to replace") << Disk{};
        QTest::newRow("cannot") << Disk{false, false, false};
    }

    void folderIsMoved()
    {
        QFETCH(Disk, disk);
        m_files.write(m_files.source + u"/inner/a.srt"_s, "a");
        QVERIFY(m_files.move(m_files.callsFor(disk)));
        QCOMPARE(m_files.read(m_files.destination + u"/inner/a.srt"_s), QByteArray("a"));
        QVERIFY(!QFileInfo::exists(m_files.source));
    }

    void folderNeverReplacesAnything_data()
    {
        QTest::addColumn<Disk>("disk");
        QTest::addColumn<bool>("replacesFolder");
        QTest::newRow("file, can refuse") << Disk{} << false;
        QTest::newRow("file, cannot") << Disk{false, false, false} << false;
        QTest::newRow("empty folder, can refuse") << Disk{} << true;
        QTest::newRow("empty folder, cannot") << Disk{false, false, false} << true;
    }

    void folderNeverReplacesAnything()
    {
        QFETCH(Disk, disk);
        QFETCH(bool, replacesFolder);
        m_files.write(m_files.source + u"/a.srt"_s, "a");
        if (replacesFolder)
            QVERIFY(QDir().mkpath(m_files.destination));
        else
            m_files.write(m_files.destination, "older");
        const Result<void> result = m_files.move(m_files.callsFor(disk));
        QVERIFY(!result);
        QCOMPARE(result.error().code, EEXIST);
        QCOMPARE(m_files.read(m_files.source + u"/a.srt"_s), QByteArray("a"));
        QCOMPARE(QFileInfo(m_files.destination).isDir(), replacesFolder);
        QVERIFY(!QFileInfo::exists(m_files.destination + u"/a.srt"_s));
    }

    void folderIsNotMovedToAnotherDisk()
    {
        m_files.write(m_files.source + u"/a.srt"_s, "a");
        const Result<void> result = m_files.move(m_files.callsFor(Disk{true, true, true}));
        QVERIFY(!result);
        QCOMPARE(result.error().code, EXDEV);
        QVERIFY(result.error().localizedDescription.contains(u"another disk"_s));
        QCOMPARE(m_files.read(m_files.source + u"/a.srt"_s), QByteArray("a"));
        QCOMPARE(m_files.namesIn(u"there"_s), QStringList());
    }

    void linkIsMovedNotItsTarget()
    {
        const QString target = m_files.write(m_files.folder + u"/target"_s, "target");
        QVERIFY(QFile::link(target, m_files.source));
        QVERIFY(m_files.move(m_files.callsFor(Disk{})));
        QCOMPARE(QFileInfo(m_files.destination).symLinkTarget(), target);
        QCOMPARE(m_files.read(target), QByteArray("target"));
    }

    void pipeIsNotCopied()
    {
        QCOMPARE(::mkfifo(QFile::encodeName(m_files.source).constData(), 0600), 0);
        const Result<void> result = m_files.move(m_files.callsFor(Disk{true, true, true}));
        QVERIFY(!result);
        QCOMPARE(result.error().code, EXDEV);
        QCOMPARE(m_files.namesIn(u"there"_s), QStringList());
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

PLOVENDIX_TEST(FileMoveKindsTest)
#include "FileMoveKindsTest.moc"
