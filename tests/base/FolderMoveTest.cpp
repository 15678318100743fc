#include "MoveFixture.h"

#include <tests/support/TestMain.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <cerrno>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// Moves of folders, links and pipes.
class FolderMoveTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_files.startAnew(); }

    void folderIsMovedOnItsDisk_data() { MoveFixture::addDisks(); }

    void folderIsMovedOnItsDisk()
    {
        QFETCH(Disk, disk);
        m_files.write(m_files.source + u"/a.srt"_s, "a");
        const Result<void> result = m_files.move(m_files.callsFor(disk));
        QCOMPARE(bool(result), !disk.isOther);
        QCOMPARE(m_files.namesIn(u"here"_s).isEmpty(), !disk.isOther);
        QCOMPARE(m_files.namesIn(u"there"_s).isEmpty(), disk.isOther);
        QCOMPARE(m_files.read((result ? m_files.destination : m_files.source) + u"/a.srt"_s),
                 QByteArray("a"));
    }

    void folderReplacesNothing_data() { MoveFixture::addDisks(); }

    void folderReplacesNothing()
    {
        QFETCH(Disk, disk);
        m_files.write(m_files.source + u"/a.srt"_s, "a");
        // A file, and a folder that a plain rename would replace because it is empty.
        for (const bool isFolder : {false, true}) {
            if (isFolder)
                QVERIFY(QFile::remove(m_files.destination) && QDir().mkdir(m_files.destination));
            else
                m_files.write(m_files.destination, "older");
            const Result<void> result = m_files.move(m_files.callsFor(disk));
            QVERIFY(!result);
            QCOMPARE(result.error().code, disk.isOther ? EXDEV : EEXIST);
            QCOMPARE(QFileInfo(m_files.destination).isDir(), isFolder);
            QCOMPARE(m_files.namesIn(u"there/Movie.en.srt"_s), QStringList());
            QCOMPARE(m_files.read(m_files.source + u"/a.srt"_s), QByteArray("a"));
        }
    }

    void onlyFilesAreCopiedToAnotherDisk()
    {
        m_files.write(m_files.source + u"/a.srt"_s, "a");
        const Result<void> folder = m_files.move(m_files.callsFor(Disk{true, true, true}));
        QVERIFY(!folder);
        QCOMPARE(folder.error().code, EXDEV);
        QVERIFY(folder.error().localizedDescription.contains(u"only files can be moved to another disk"_s));
        QCOMPARE(m_files.read(m_files.source + u"/a.srt"_s), QByteArray("a"));
        m_files.source += u".pipe"_s;
        QCOMPARE(::mkfifo(QFile::encodeName(m_files.source).constData(), 0600), 0);
        const Result<void> pipe = m_files.move(m_files.callsFor(Disk{true, true, true}));
        QVERIFY(!pipe);
        QCOMPARE(pipe.error().code, EXDEV);
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

private:
    MoveFixture m_files;
};

PLOVENDIX_TEST(FolderMoveTest)
#include "FolderMoveTest.moc"
