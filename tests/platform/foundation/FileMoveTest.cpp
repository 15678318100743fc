#include "FaultyCalls.h"

#include <platform/FileManager.h>
#include <support/Sandbox.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// What a disk can do: the ways of moving that the file systems at hand allow.
struct Disk
{
    bool isOther = false;
    bool canRefuseToReplace = true;
    bool canLink = true;
};
Q_DECLARE_METATYPE(Disk)

/// Moves on file systems of every kind, with every call failing in turn.
class FileMoveTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void fileIsMoved_data() { disks(); }
    void fileIsMoved();
    void existingFileIsNeverReplaced_data() { disks(); }
    void existingFileIsNeverReplaced();
    void danglingLinkAtTheDestinationIsNotReplaced_data() { disks(); }
    void danglingLinkAtTheDestinationIsNotReplaced();
    void missingSourceIsSaid_data() { disks(); }
    void missingSourceIsSaid();
    void missingFolderIsSaid_data() { disks(); }
    void missingFolderIsSaid();
    void anyFailingCallLeavesAllWell_data() { disks(); }
    void anyFailingCallLeavesAllWell();

    void fileThatAppearsMeanwhileIsNotReplaced();
    void copyKeepsModeTimeAndContent();
    void shortAndInterruptedWritesAreContinued();
    void emptyFileIsCopied();
    void fileSystemWithoutModesOrFlushingIsFine();
    void sourceThatCannotBeRemovedLeavesBothAfterACopy();
    void sourceThatCannotBeRemovedUndoesALink();

    void folderIsMoved_data();
    void folderIsMoved();
    void folderNeverReplacesAnything_data();
    void folderNeverReplacesAnything();
    void folderIsNotMovedToAnotherDisk();
    void linkIsMovedNotItsTarget();
    void pipeIsNotCopied();

    void namesThatAreNoTextSurvive();
    void sentenceSaysWhatAndWhere_data();
    void sentenceSaysWhatAndWhere();

private:
    void disks() const;
    std::shared_ptr<FaultyCalls> callsFor(const Disk &disk) const;
    Result<void> move(const std::shared_ptr<FaultyCalls> &calls) const;
    QString write(const QString &path, const QByteArray &content) const;
    void writeSource(const QByteArray &content = "subtitle") const;
    QByteArray read(const QString &path) const;
    QStringList namesIn(const QString &folder) const;

    Sandbox m_sandbox;
    QString m_folder;
    QString m_source;
    QString m_destination;
    int m_number = 0;
};

void FileMoveTest::init()
{
    m_folder = m_sandbox.path(u"move-%1"_s.arg(++m_number));
    m_source = m_folder + u"/here/download.srt"_s;
    m_destination = m_folder + u"/there/Movie.en.srt"_s;
    QVERIFY(QDir().mkpath(m_folder + u"/here"_s));
    QVERIFY(QDir().mkpath(m_folder + u"/there"_s));
}

void FileMoveTest::disks() const
{
    QTest::addColumn<Disk>("disk");
    QTest::newRow("one disk") << Disk{};
    QTest::newRow("one disk that cannot refuse to replace") << Disk{false, false, true};
    QTest::newRow("one disk that can neither refuse nor link") << Disk{false, false, false};
    QTest::newRow("two disks") << Disk{true, true, true};
    QTest::newRow("two disks that cannot refuse to replace") << Disk{true, false, true};
    QTest::newRow("two disks that can neither refuse nor link") << Disk{true, false, false};
}

std::shared_ptr<FaultyCalls> FileMoveTest::callsFor(const Disk &disk) const
{
    auto calls = std::make_shared<FaultyCalls>();
    calls->canRefuseToReplace = disk.canRefuseToReplace;
    calls->canLink = disk.canLink;
    if (disk.isOther)
        calls->otherDisk = QFile::encodeName(m_folder + u"/there"_s);
    return calls;
}

Result<void> FileMoveTest::move(const std::shared_ptr<FaultyCalls> &calls) const
{
    return FileManager(calls).moveItem(QUrl::fromLocalFile(m_source), QUrl::fromLocalFile(m_destination));
}

QString FileMoveTest::write(const QString &path, const QByteArray &content) const
{
    return m_sandbox.writeFile(QDir(m_sandbox.path(u"."_s)).relativeFilePath(path), content);
}

void FileMoveTest::writeSource(const QByteArray &content) const
{
    write(m_source, content);
}

QByteArray FileMoveTest::read(const QString &path) const
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(nothing)");
}

QStringList FileMoveTest::namesIn(const QString &folder) const
{
    const auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    return QDir(m_folder + u'/' + folder).entryList(everything, QDir::Name);
}

void FileMoveTest::fileIsMoved()
{
    QFETCH(Disk, disk);
    writeSource();
    const auto calls = callsFor(disk);
    const Result<void> result = move(calls);
    QVERIFY2(result, result ? "" : qPrintable(result.error().localizedDescription));
    QCOMPARE(namesIn(u"here"_s), QStringList());
    QCOMPARE(namesIn(u"there"_s), QStringList{u"Movie.en.srt"_s});
    QCOMPARE(read(m_destination), QByteArray("subtitle"));
    QCOMPARE(calls->openDescriptors, 0);
}

void FileMoveTest::existingFileIsNeverReplaced()
{
    QFETCH(Disk, disk);
    writeSource();
    write(m_destination, "older");
    const Result<void> result = move(callsFor(disk));
    QVERIFY(!result);
    QCOMPARE(result.error().domain, u"FileManager"_s);
    QCOMPARE(result.error().code, EEXIST);
    QCOMPARE(
        result.error().localizedDescription,
        u"“download.srt” could not be moved to “Movie.en.srt” because a file with that name already exists in “%1”."_s
            .arg(m_folder + u"/there"_s));
    QCOMPARE(read(m_source), QByteArray("subtitle"));
    QCOMPARE(read(m_destination), QByteArray("older"));
    QCOMPARE(namesIn(u"there"_s), QStringList{u"Movie.en.srt"_s});
}

void FileMoveTest::danglingLinkAtTheDestinationIsNotReplaced()
{
    QFETCH(Disk, disk);
    writeSource();
    QVERIFY(QFile::link(m_folder + u"/nowhere"_s, m_destination));
    const Result<void> result = move(callsFor(disk));
    QVERIFY(!result);
    QCOMPARE(result.error().code, EEXIST);
    QVERIFY(QFileInfo(m_destination).isSymLink());
    QVERIFY(!QFileInfo::exists(m_folder + u"/nowhere"_s));
    QCOMPARE(read(m_source), QByteArray("subtitle"));
}

void FileMoveTest::missingSourceIsSaid()
{
    QFETCH(Disk, disk);
    const Result<void> result = move(callsFor(disk));
    QVERIFY(!result);
    QCOMPARE(result.error().code, ENOENT);
    QCOMPARE(result.error().localizedDescription,
             u"“download.srt” could not be moved because it no longer exists."_s);
    QCOMPARE(namesIn(u"there"_s), QStringList());
}

void FileMoveTest::missingFolderIsSaid()
{
    QFETCH(Disk, disk);
    writeSource();
    QVERIFY(QDir().rmdir(m_folder + u"/there"_s));
    const Result<void> result = move(callsFor(disk));
    QVERIFY(!result);
    QCOMPARE(result.error().code, ENOENT);
    QCOMPARE(result.error().localizedDescription,
             u"“download.srt” could not be moved to “%1” because that folder does not exist."_s.arg(
                 m_folder + u"/there"_s));
    QCOMPARE(read(m_source), QByteArray("subtitle"));
}

void FileMoveTest::anyFailingCallLeavesAllWell()
{
    QFETCH(Disk, disk);
    writeSource();
    const auto counting = callsFor(disk);
    QVERIFY(move(counting));
    const qsizetype steps = counting->made.size();
    int failures = 0;
    for (int step = 1; step <= steps; ++step) {
        for (const int code : {ENOSPC, EROFS, EIO, EACCES, EDQUOT}) {
            QFile::remove(m_destination);
            writeSource();
            const auto calls = callsFor(disk);
            calls->failingCall = step;
            calls->failure = code;
            const Result<void> result = move(calls);
            const QByteArray context =
                calls->made.value(step - 1).toLatin1() + " " + QByteArray::number(code);
            QVERIFY2(calls->openDescriptors == 0, context.constData());
            if (result) {
                QVERIFY2(read(m_destination) == "subtitle", context.constData());
                QVERIFY2(namesIn(u"there"_s).size() == 1, context.constData());
                continue;
            }
            ++failures;
            QCOMPARE(result.error().code, code);
            QVERIFY2(read(m_source) == "subtitle", context.constData());
            QVERIFY2(namesIn(u"there"_s).isEmpty(), context.constData());
        }
    }
    QVERIFY(failures >= 5);
}

void FileMoveTest::fileThatAppearsMeanwhileIsNotReplaced()
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
    writeSource();
    FileManager manager(std::make_shared<Meddling>(m_destination));
    const Result<void> result =
        manager.moveItem(QUrl::fromLocalFile(m_source), QUrl::fromLocalFile(m_destination));
    QVERIFY(!result);
    QCOMPARE(result.error().code, EEXIST);
    QCOMPARE(read(m_destination), QByteArray("faster"));
    QCOMPARE(namesIn(u"there"_s), QStringList{u"Movie.en.srt"_s});
    QCOMPARE(read(m_source), QByteArray("subtitle"));
}

void FileMoveTest::copyKeepsModeTimeAndContent()
{
    QByteArray content;
    for (int number = 0; number < 200'000; ++number)
        content += QByteArray::number(number);
    writeSource(content);
    const QDateTime time(QDate(2020, 2, 3), QTime(4, 5, 6), Qt::UTC);
    {
        QFile file(m_source);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
    }
    QCOMPARE(::chmod(QFile::encodeName(m_source).constData(), 0640), 0);
    QVERIFY(move(callsFor(Disk{true, true, true})));
    QCOMPARE(read(m_destination), content);
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(m_destination).constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777, 0640U);
    QCOMPARE(QFileInfo(m_destination).lastModified(), time);
}

void FileMoveTest::shortAndInterruptedWritesAreContinued()
{
    const QByteArray content = QByteArray("0123456789").repeated(100);
    writeSource(content);
    const auto calls = callsFor(Disk{true, true, true});
    calls->writesAtMost = 7;
    QVERIFY(move(calls));
    QCOMPARE(read(m_destination), content);
}

void FileMoveTest::emptyFileIsCopied()
{
    writeSource("");
    QVERIFY(move(callsFor(Disk{true, true, true})));
    QCOMPARE(read(m_destination), QByteArray());
    QVERIFY(!QFileInfo::exists(m_source));
}

void FileMoveTest::fileSystemWithoutModesOrFlushingIsFine()
{
    for (const QString &name : {u"setMode"_s, u"setTimes"_s, u"flush"_s}) {
        QFile::remove(m_destination);
        writeSource();
        const auto calls = callsFor(Disk{true, true, true});
        calls->failingName = name;
        calls->failure = name == u"flush" ? EINVAL : EPERM;
        QVERIFY2(move(calls), qPrintable(name));
        QVERIFY(calls->made.contains(name));
        QCOMPARE(read(m_destination), QByteArray("subtitle"));
    }
}

void FileMoveTest::sourceThatCannotBeRemovedLeavesBothAfterACopy()
{
    writeSource();
    const auto calls = callsFor(Disk{true, true, true});
    calls->failingName = u"unlink"_s;
    calls->failure = EROFS;
    QVERIFY(move(calls));
    QCOMPARE(read(m_source), QByteArray("subtitle"));
    QCOMPARE(read(m_destination), QByteArray("subtitle"));
}

void FileMoveTest::sourceThatCannotBeRemovedUndoesALink()
{
    writeSource();
    const auto calls = callsFor(Disk{false, false, true});
    // Status, rename, link, and then the removal of the first name.
    calls->failingCall = 4;
    calls->failure = EPERM;
    const Result<void> result = move(calls);
    QCOMPARE(calls->made.value(3), u"unlink"_s);
    QVERIFY(!result);
    QCOMPARE(result.error().code, EPERM);
    QCOMPARE(read(m_source), QByteArray("subtitle"));
    QVERIFY(!QFileInfo::exists(m_destination));
}

void FileMoveTest::folderIsMoved_data()
{
    QTest::addColumn<Disk>("disk");
    QTest::newRow("can refuse to replace") << Disk{};
    QTest::newRow("cannot") << Disk{false, false, false};
}

void FileMoveTest::folderIsMoved()
{
    QFETCH(Disk, disk);
    write(m_source + u"/inner/a.srt"_s, "a");
    QVERIFY(move(callsFor(disk)));
    QCOMPARE(read(m_destination + u"/inner/a.srt"_s), QByteArray("a"));
    QVERIFY(!QFileInfo::exists(m_source));
}

void FileMoveTest::folderNeverReplacesAnything_data()
{
    QTest::addColumn<Disk>("disk");
    QTest::addColumn<bool>("replacesFolder");
    QTest::newRow("file, can refuse") << Disk{} << false;
    QTest::newRow("file, cannot") << Disk{false, false, false} << false;
    QTest::newRow("empty folder, can refuse") << Disk{} << true;
    QTest::newRow("empty folder, cannot") << Disk{false, false, false} << true;
}

void FileMoveTest::folderNeverReplacesAnything()
{
    QFETCH(Disk, disk);
    QFETCH(bool, replacesFolder);
    write(m_source + u"/a.srt"_s, "a");
    if (replacesFolder)
        QVERIFY(QDir().mkpath(m_destination));
    else
        write(m_destination, "older");
    const Result<void> result = move(callsFor(disk));
    QVERIFY(!result);
    QCOMPARE(result.error().code, EEXIST);
    QCOMPARE(read(m_source + u"/a.srt"_s), QByteArray("a"));
    QCOMPARE(QFileInfo(m_destination).isDir(), replacesFolder);
    QVERIFY(!QFileInfo::exists(m_destination + u"/a.srt"_s));
}

void FileMoveTest::folderIsNotMovedToAnotherDisk()
{
    write(m_source + u"/a.srt"_s, "a");
    const Result<void> result = move(callsFor(Disk{true, true, true}));
    QVERIFY(!result);
    QCOMPARE(result.error().code, EXDEV);
    QVERIFY(result.error().localizedDescription.contains(u"another disk"_s));
    QCOMPARE(read(m_source + u"/a.srt"_s), QByteArray("a"));
    QCOMPARE(namesIn(u"there"_s), QStringList());
}

void FileMoveTest::linkIsMovedNotItsTarget()
{
    const QString target = write(m_folder + u"/target"_s, "target");
    QVERIFY(QFile::link(target, m_source));
    QVERIFY(move(callsFor(Disk{})));
    QCOMPARE(QFileInfo(m_destination).symLinkTarget(), target);
    QCOMPARE(read(target), QByteArray("target"));
}

void FileMoveTest::pipeIsNotCopied()
{
    QCOMPARE(::mkfifo(QFile::encodeName(m_source).constData(), 0600), 0);
    const Result<void> result = move(callsFor(Disk{true, true, true}));
    QVERIFY(!result);
    QCOMPARE(result.error().code, EXDEV);
    QCOMPARE(namesIn(u"there"_s), QStringList());
}

void FileMoveTest::namesThatAreNoTextSurvive()
{
    const QByteArray folder = QFile::encodeName(m_folder);
    const QByteArray source = folder + "/here/f\xfcr.srt";
    const QByteArray destination = folder + "/there/\xff\xfe \xe2\x82.srt";
    FileSystemCalls calls;
    calls.close(calls.open(source, O_WRONLY | O_CREAT, 0600));
    struct stat status = {};
    QCOMPARE(calls.status(source, status), 0);
    for (const Disk &disk : {Disk{}, Disk{true, true, true}}) {
        FileManager manager(callsFor(disk));
        const Result<void> moved = manager.moveItem(FileManager::urlFromFileSystemPath(source),
                                                    FileManager::urlFromFileSystemPath(destination));
        QVERIFY(moved);
        QCOMPARE(calls.status(destination, status), 0);
        QCOMPARE(calls.status(source, status), -ENOENT);
        QCOMPARE(calls.renameWithoutReplacing(destination, source), 0);
    }
}

void FileMoveTest::sentenceSaysWhatAndWhere_data()
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

void FileMoveTest::sentenceSaysWhatAndWhere()
{
    QFETCH(int, code);
    QFETCH(QString, reason);
    m_source = m_folder + u"/here/100% %2$@.srt"_s;
    writeSource();
    const auto calls = callsFor(Disk{});
    calls->failingName = u"renameWithoutReplacing"_s;
    calls->failure = code;
    const Result<void> result = move(calls);
    QVERIFY(!result);
    QCOMPARE(result.error().code, code);
    QCOMPARE(result.error().localizedDescription,
             u"“100% %2$@.srt” could not be moved to “"_s + m_folder + u"/there” because "_s + reason + u'.');
}

QTEST_GUILESS_MAIN(FileMoveTest)
#include "FileMoveTest.moc"
