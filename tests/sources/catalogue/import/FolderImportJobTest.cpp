#include "ImportFixture.h"

#include <sources/catalogue/import/FolderImportJob.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFile>

#include <cerrno>
#include <sqlite3.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
ssize_t writeToAFullDisk(int, const void *, std::size_t)
{
    errno = ENOSPC;
    return -1;
}

ssize_t writeToAFullDiskAt(int, const void *, std::size_t, off_t)
{
    errno = ENOSPC;
    return -1;
}

/// From `fill` on no file of SQLite's can be written, for as long as this lives.
class FullSqliteDisk final
{
public:
    ~FullSqliteDisk()
    {
        for (const char *call : {"write", "pwrite", "pwrite64"})
            m_files->xSetSystemCall(m_files, call, nullptr);
    }
    void fill()
    {
        set("write", reinterpret_cast<sqlite3_syscall_ptr>(writeToAFullDisk));
        set("pwrite", reinterpret_cast<sqlite3_syscall_ptr>(writeToAFullDiskAt));
        set("pwrite64", reinterpret_cast<sqlite3_syscall_ptr>(writeToAFullDiskAt));
    }

private:
    void set(const char *call, sqlite3_syscall_ptr function) const
    {
        QCOMPARE(m_files->xSetSystemCall(m_files, call, function), SQLITE_OK);
    }
    sqlite3_vfs *m_files = sqlite3_vfs_find(nullptr);
};
} // namespace

/// Imports of a folder on the test's own thread: how they end, and what the person reads.
class FolderImportJobTest final : public QObject
{
    Q_OBJECT

    using Phase = FolderImportState::Phase;

    Sandbox m_sandbox;
    std::unique_ptr<ImportFixture> m_fixture;

    std::unique_ptr<FolderImportJob> job(std::chrono::milliseconds writerTimeout = 30s) const
    {
        return std::make_unique<FolderImportJob>(m_fixture->path(), m_fixture->folder(), writerTimeout);
    }
    FolderImportState run() const
    {
        return job()->run([](const FolderImportState &) {});
    }
    /// Runs it, and does `what` once that many files were looked at.
    FolderImportState runUntil(qint64 files, const std::function<void(FolderImportJob &)> &what) const
    {
        const auto running = job();
        bool isDone = false;
        return running->run([&](const FolderImportState &state) {
            if (isDone || state.phase != Phase::Reading || state.files < files)
                return;
            isDone = true;
            what(*running);
        });
    }
    void expectFailure(const FolderImportState &state, const QString &sentence) const
    {
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure, sentence);
    }

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<ImportFixture>(m_sandbox); }

    void stopInTheMiddleKeepsWhatWasRead()
    {
        m_fixture->writeEpisodes(20);
        const FolderImportState stopped = runUntil(8, [](FolderImportJob &job) { job.stop(); });
        QCOMPARE(stopped.phase, Phase::Stopped);
        QCOMPARE(stopped.files, 8);
        QCOMPARE(stopped.added, 8);
        const FolderImportState rest = run();
        QCOMPARE(rest.phase, Phase::Finished);
        QCOMPARE(rest.known, 8);
        QCOMPARE(rest.added, 12);
    }

    void stopWhileCountingReadsNothing()
    {
        m_fixture->writeEpisodes(20);
        const auto counting = job();
        const FolderImportState stopped = counting->run([&](const FolderImportState &state) {
            if (state.total == 5)
                counting->stop();
        });
        QCOMPARE(stopped.phase, Phase::Stopped);
        QCOMPARE(stopped.total, 5);
        QVERIFY(!QFile::exists(m_fixture->path()));
    }

    void fullDiskLeavesASoundCatalogueThatGrowsOnceThereIsRoom()
    {
        m_fixture->writeEpisodes(2);
        QCOMPARE(run().added, 2);
        m_fixture->writeEpisodes(9, 2);
        FolderImportState state;
        {
            FullSqliteDisk disk;
            state = runUntil(1, [&](FolderImportJob &) { disk.fill(); });
        }
        expectFailure(state,
                      u"The disk is full: the subtitle catalogue “%1” cannot grow."_s.arg(m_fixture->path()));
        QCOMPARE(state.added, 0);
        QVERIFY(m_fixture->faults().isEmpty());
        const FolderImportState rest = run();
        QCOMPARE(rest.known, 2);
        QCOMPARE(rest.added, 7);
        QVERIFY(m_fixture->faults().isEmpty());
    }

    void fullDiskWithoutACatalogueIsSaidToo()
    {
        m_fixture->writeEpisodes(2);
        FullSqliteDisk disk;
        disk.fill();
        const FolderImportState state = run();
        QVERIFY2(state.failure.startsWith(u"The disk is full"_s), qPrintable(state.failure));
        QVERIFY(!QFile::exists(m_fixture->path()));
    }

    void writerThatDoesNotEndIsWaitedForOnlySoLong()
    {
        m_fixture->writeEpisodes(1);
        QCOMPARE(run().added, 1);
        m_fixture->writeEpisodes(3, 1);
        const auto other = m_fixture->connection();
        other->exec("BEGIN IMMEDIATE");
        expectFailure(
            job(100ms)->run([](const FolderImportState &) {}),
            u"Another import is writing to the subtitle catalogue “%1”. Try again when it has ended."_s.arg(
                m_fixture->path()));
        other->exec("ROLLBACK");
        QCOMPARE(run().added, 2);
    }

    void catalogueThatCannotBeUsedIsLeftAsItIs_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("overwritten") << QByteArray(50'000, 'x');
        QTest::newRow("empty") << QByteArray();
    }
    void catalogueThatCannotBeUsedIsLeftAsItIs()
    {
        QFETCH(const QByteArray, content);
        m_fixture->writeEpisodes(2);
        m_fixture->write(u"../catalogue.sqlite"_s, content);
        expectFailure(run(), u"The subtitle catalogue “%1” is damaged. Replace the file or remove it."_s.arg(
                                 m_fixture->path()));
        QFile file(m_fixture->path());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), content);
    }

    void catalogueDamagedInTheMiddleIsSaid()
    {
        m_fixture->writeEpisodes(60);
        QCOMPARE(run().added, 60);
        QFile file(m_fixture->path());
        QVERIFY(file.open(QIODevice::ReadWrite));
        constexpr qint64 FirstPage = 4096;
        QVERIFY(file.size() > 3 * FirstPage && file.seek(FirstPage));
        QVERIFY(file.write(QByteArray(file.size() - FirstPage, '\xff')) > 0);
        file.close();
        QVERIFY(run().failure.contains(u"is damaged"_s));
    }

    void catalogueWithoutAPlaceIsSaid()
    {
        m_fixture->writeEpisodes(1);
        const QString path = m_fixture->write(u"../in-the-way"_s, "a file") + u"/catalogue.sqlite"_s;
        expectFailure(FolderImportJob(path, m_fixture->folder(), 30s).run([](const FolderImportState &) {}),
                      u"The subtitle catalogue “%1” cannot be written."_s.arg(path));
    }

    void folderThatIsGoneIsSaid()
    {
        m_fixture->writeEpisodes(6);
        QCOMPARE(run().added, 6);
        const QString sentence =
            u"The folder “%1” is no longer there. What was added before is in the catalogue."_s.arg(
                m_fixture->folder());
        const FolderImportState vanished = runUntil(
            2, [this](FolderImportJob &) { QVERIFY(QDir(m_fixture->folder()).removeRecursively()); });
        expectFailure(vanished, sentence);
        QCOMPARE(vanished.known, 2);
        QVERIFY(vanished.firstRefusal.endsWith(u"” is no longer there."_s));
        expectFailure(run(), sentence);
        QVERIFY(QDir().mkpath(m_fixture->folder())); // the place of a missing disk
        expectFailure(run(), u"There are no subtitle files in the folder “%1” any more. What was added before"
                             " is in the catalogue."_s.arg(m_fixture->folder()));
        QCOMPARE(m_fixture->search(u"harbour lights"_s).size(), 6);
    }

    void closedFolderIsNotTakenForAnEmptyOne()
    {
        m_fixture->write(u"closed/Night.Ferry.2020.en.srt"_s, ImportFixture::cue(u"b"_s));
        FolderImportState state;
        m_fixture->withoutRights(m_fixture->folder(), [&] { state = run(); });
        expectFailure(state, u"You are not allowed to read the folder “%1”."_s.arg(m_fixture->folder()));
        m_fixture->withoutRights(m_fixture->folder() + u"/closed"_s, [&] { state = run(); });
        QCOMPARE(state.phase, Phase::Finished);
        QCOMPARE(state.total, 1);
        QCOMPARE(state.files, 1);
        QCOMPARE(state.firstRefusal, u"“closed” cannot be opened."_s);
    }

    void folderThatNeverHadAnyIsNoFailure()
    {
        m_fixture->write(u"notes.md"_s, "nothing");
        QCOMPARE(run().phase, Phase::Finished);
        QVERIFY(!QFile::exists(m_fixture->path())); // nothing is made for nothing
        m_fixture->write(u"../other/Night.Ferry.2020.en.srt"_s, ImportFixture::cue(u"b"_s));
        m_fixture->add(m_fixture->folder() + u"/../other"_s);
        const FolderImportState state = run();
        QCOMPARE(state.phase, Phase::Finished);
        QCOMPARE(state.total, 0);
        QCOMPARE(state.refused, 0);
    }

    void firstRefusalIsASentence_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("sentence");
        const auto row = [](const QString &name, const QByteArray &content, const QString &sentence) {
            QTest::newRow(qPrintable(sentence)) << name << content << sentence;
        };
        row(u"deep/page.srt"_s, "<!doctype html><html></html>", u"“deep/page.srt” is no subtitle."_s);
        row(u"large.srt"_s, QByteArray(9 * 1024 * 1024, 'x'), u"“large.srt” is too large for a subtitle."_s);
        row(u"packed.srt"_s, "7z\xbc\xaf\x27\x1c and no more of it", u"“packed.srt” cannot be unpacked."_s);
        row(u"more.zip"_s, "no archive", u"“more.zip” is damaged or of an unknown kind."_s);
        row(QString(100, u'a') + QString(100, u'b') + u".srt"_s, "no",
            u"“%1…%2.srt” is no subtitle."_s.arg(QString(30, u'a'), QString(26, u'b')));
        row(u"two\nlines.srt"_s, "no", u"“two lines.srt” is no subtitle."_s);
    }
    void firstRefusalIsASentence()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, content);
        m_fixture->write(name, content);
        const FolderImportState state = run();
        QCOMPARE(state.phase, Phase::Finished);
        QCOMPARE(state.refused, 1);
        QTEST(state.firstRefusal, "sentence");
    }

    void refusalOfAnArchiveIsASentence()
    {
        const ImportFixture::Members members{{u"Night.Ferry.2020.srt"_s, ImportFixture::cue(u"a"_s)}};
        const QString locked = m_fixture->writeArchive(u"locked.zip"_s, members, "secret");
        QCOMPARE(run().firstRefusal, u"“locked.zip” is protected by a password."_s);
        QVERIFY(QFile::remove(locked));
        m_fixture->writeArchive(u"bomb.tar.gz"_s, {{u"zeros.bin"_s, QByteArray(80 * 1024 * 1024, '\0')}});
        QCOMPARE(run().firstRefusal, u"“bomb.tar.gz” unpacks to far more than its size."_s);
    }
};

PLOVENDIX_TEST(FolderImportJobTest)
#include "FolderImportJobTest.moc"
