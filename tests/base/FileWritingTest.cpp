#include <base/FileWriting.h>
#include <tests/support/FullDisk.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <cerrno>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class FileWritingTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;

    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(nothing)");
    }
    static unsigned modeOf(const QString &path)
    {
        struct stat status = {};
        return ::lstat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777U : 0U;
    }
    QStringList namesIn(const QString &folder) const
    {
        const auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
        return QDir(m_sandbox.path(folder)).entryList(everything, QDir::Name);
    }

private Q_SLOTS:
    void cleanup() { setCallsOfWriteFile(nullptr); }

    void newFileHoldsTheBytes()
    {
        QVERIFY(QDir().mkpath(m_sandbox.path(u"new"_s)));
        const QString path = m_sandbox.path(u"new/file"_s);
        const mode_t mask = ::umask(0027);
        const Result<void> written = writeFile(path, "content");
        ::umask(mask);
        QVERIFY(written);
        QCOMPARE(read(path), QByteArray("content"));
        QCOMPARE(modeOf(path), 0640U);
        QCOMPARE(namesIn(u"new"_s), QStringList{u"file"_s});
    }

    void replacedFileKeepsItsMode()
    {
        const QString path = m_sandbox.writeFile(u"shared"_s, "old");
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0664), 0);
        QVERIFY(writeFile(path, "new"));
        QCOMPARE(read(path), QByteArray("new"));
        QCOMPARE(modeOf(path), 0664U);
    }

    void ownersFileIsClosedToOthers()
    {
        const QString path = m_sandbox.writeFile(u"open"_s, "old");
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0664), 0);
        QVERIFY(writeFile(path, "new", FileAccess::OwnerOnly));
        QCOMPARE(modeOf(path), 0600U);
        QVERIFY(writeFile(m_sandbox.path(u"closed"_s), "new", FileAccess::OwnerOnly));
        QCOMPARE(modeOf(m_sandbox.path(u"closed"_s)), 0600U);
    }

    /// In this order a power failure at any moment leaves the old file or the new one.
    void bytesAreOnTheDiskBeforeTheNameIs()
    {
        FaultyCalls calls;
        setCallsOfWriteFile(&calls);
        QVERIFY(writeFile(m_sandbox.path(u"ordered"_s), "bytes"));
        QCOMPARE(calls.made, (QStringList{u"status"_s, u"open"_s, u"duplicate"_s, u"lock"_s,
                                          u"statusOfOpen"_s, u"write"_s, u"flush"_s, u"close"_s, u"rename"_s,
                                          u"open"_s, u"flush"_s, u"close"_s, u"close"_s}));
        QCOMPARE(calls.openDescriptors, 0);
    }

    void fullDiskKeepsTheOldFile_data() { FullDisk::addRows(); }
    void fullDiskKeepsTheOldFile()
    {
        QFETCH(const QString, failingCall);
        FullDisk disk(m_sandbox, failingCall);
        QVERIFY(writeFile(disk.path(u"file"_s), "old"));
        disk.fill();
        const Result<void> written = writeFile(disk.path(u"file"_s), "new");
        QVERIFY(!written);
        QCOMPARE(written.error().code, ENOSPC);
        QCOMPARE(written.error().localizedDescription, u"There is not enough free space."_s);
        QVERIFY(!writeFile(disk.path(u"another"_s), "new"));
        QCOMPARE(disk.files(), QStringList{u"file"_s});
        QCOMPARE(read(disk.path(u"file"_s)), QByteArray("old"));
        disk.makeRoom();
        QVERIFY(writeFile(disk.path(u"file"_s), "new"));
        QCOMPARE(read(disk.path(u"file"_s)), QByteArray("new"));
    }

    /// The new file is in its place then, and whole.
    void folderThatCannotBeFlushedIsNoFailure()
    {
        FaultyCalls calls;
        calls.failingCall = 11; // the flush of the folder
        calls.failure = EIO;
        setCallsOfWriteFile(&calls);
        QVERIFY(writeFile(m_sandbox.path(u"flushed"_s), "bytes"));
        QCOMPARE(calls.made.value(10), u"flush"_s);
        QCOMPARE(read(m_sandbox.path(u"flushed"_s)), QByteArray("bytes"));
    }

    void linkIsFollowed()
    {
        const QString file = m_sandbox.writeFile(u"linked/far/file"_s, "old");
        QVERIFY(QFile::link(u"far/file"_s, m_sandbox.path(u"linked/second"_s)));
        QVERIFY(QFile::link(u"second"_s, m_sandbox.path(u"linked/first"_s)));
        QVERIFY(writeFile(m_sandbox.path(u"linked/first"_s), "new"));
        QVERIFY(QFileInfo(m_sandbox.path(u"linked/first"_s)).isSymLink());
        QCOMPARE(read(file), QByteArray("new"));
    }

    void linkToNothingIsFollowed()
    {
        QVERIFY(QDir().mkpath(m_sandbox.path(u"dangling/far"_s)));
        QVERIFY(QFile::link(u"far/file"_s, m_sandbox.path(u"dangling/link"_s)));
        QVERIFY(writeFile(m_sandbox.path(u"dangling/link"_s), "new"));
        QCOMPARE(read(m_sandbox.path(u"dangling/far/file"_s)), QByteArray("new"));
    }

    void nonFilesAreKept_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char *kind : {"folder", "pipe", "circle of links"})
            QTest::newRow(kind) << QString::fromLatin1(kind);
    }
    void nonFilesAreKept()
    {
        QFETCH(const QString, kind);
        const QString path = m_sandbox.path(u"no file: "_s + kind);
        if (kind == u"folder"_s)
            QVERIFY(QDir().mkpath(path));
        else if (kind == u"pipe"_s)
            QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        else
            QVERIFY(QFile::link(path, path));
        struct stat before = {};
        struct stat after = {};
        QCOMPARE(::lstat(QFile::encodeName(path).constData(), &before), 0);
        QVERIFY(!writeFile(path, "new"));
        QCOMPARE(::lstat(QFile::encodeName(path).constData(), &after), 0);
        QCOMPARE(after.st_ino, before.st_ino);
    }

    /// The person has made it read-only; root may write everything.
    void fileThatMayNotBeWrittenStays()
    {
        const QString path = m_sandbox.writeFile(u"read-only"_s, "old");
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
        const bool mayWrite = QFileInfo(path).isWritable();
        QCOMPARE(writeFile(path, "new").hasValue(), mayWrite);
        QCOMPARE(read(path), QByteArray(mayWrite ? "new" : "old"));
    }

    void missingFoldersAreMade()
    {
        QVERIFY(writeFile(m_sandbox.path(u"made/inner one/file"_s), "new"));
        QCOMPARE(read(m_sandbox.path(u"made/inner one/file"_s)), QByteArray("new"));
        QCOMPARE(namesIn(u"made/inner one"_s), QStringList{u"file"_s});
    }

    void fileInPlaceOfTheFolderStays()
    {
        const QString inTheWay = m_sandbox.writeFile(u"in the way"_s, "mine");
        const Result<void> written = writeFile(inTheWay + u"/inner/file"_s, "new");
        QVERIFY(!written);
        QCOMPARE(written.error().code, ENOTDIR);
        QCOMPARE(read(inTheWay), QByteArray("mine"));
    }

    /// The disk that the link leads to may be gone for the moment.
    void folderThatALinkLeadsToIsNotMade()
    {
        QVERIFY(QDir().mkpath(m_sandbox.path(u"linking"_s)));
        QVERIFY(QFile::link(m_sandbox.path(u"gone disk/file"_s), m_sandbox.path(u"linking/file"_s)));
        const Result<void> written = writeFile(m_sandbox.path(u"linking/file"_s), "new");
        QVERIFY(!written);
        QCOMPARE(written.error().code, ENOENT);
        QVERIFY(!QFileInfo::exists(m_sandbox.path(u"gone disk"_s)));
    }

    void secretIsNeverReadableByOthers()
    {
        FaultyCalls calls;
        setCallsOfWriteFile(&calls);
        QVERIFY(writeFile(m_sandbox.path(u"secret"_s), "hush", FileAccess::Secret));
        QCOMPARE(modeOf(m_sandbox.path(u"secret"_s)), 0600U);
        QCOMPARE(calls.made.count(u"setMode"_s), 1);
        QVERIFY(calls.made.indexOf(u"setMode"_s) < calls.made.indexOf(u"write"_s));
    }

    void onlyASecretNeedsAModeOfItsOwn()
    {
        FaultyCalls calls;
        calls.failingName = u"setMode"_s;
        calls.failure = EPERM;
        setCallsOfWriteFile(&calls);
        const QString secret = m_sandbox.path(u"modeless/secret"_s);
        QVERIFY(writeFile(m_sandbox.path(u"modeless/report"_s), "report", FileAccess::OwnerOnly));
        const Result<void> written = writeFile(secret, "hush", FileAccess::Secret);
        QVERIFY(!written);
        QCOMPARE(written.error().code, EPERM);
        QCOMPARE(namesIn(u"modeless"_s), QStringList{u"report"_s});
        QCOMPARE(calls.made.count(u"write"_s), 1); // the report's
    }
};

PLOVENDIX_TEST(FileWritingTest)
#include "FileWritingTest.moc"
