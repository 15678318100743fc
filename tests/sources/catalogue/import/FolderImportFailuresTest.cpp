#include "FolderJobFixture.h"

#include <tests/support/TestMain.h>

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <cerrno>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Phase = FolderImportState::Phase;

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
class FullDisk final
{
public:
    ~FullDisk()
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

/// What keeps an import from its end though its folder is all right: somebody who stops it, the disk, and the
/// catalogue. Met on the thread that reads, at a moment that the test chooses.
class FolderImportFailuresTest final : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    std::unique_ptr<FolderJobFixture> m_fixture;

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<FolderJobFixture>(m_sandbox); }

    void stopInTheMiddleKeepsWhatWasReadAndALaterRunCompletes()
    {
        m_fixture->writeEpisodes(20);
        const FolderImportState stopped = m_fixture->runUntil(8, [](FolderImportJob &job) { job.stop(); });
        QCOMPARE(stopped.phase, Phase::Stopped);
        QCOMPARE(stopped.files, 8);
        QCOMPARE(stopped.added, 8);
        QVERIFY(m_fixture->import().faults().isEmpty());
        const FolderImportState rest = m_fixture->run();
        QCOMPARE(rest.phase, Phase::Finished);
        QCOMPARE(rest.known, 8);
        QCOMPARE(rest.added, 12);
        QVERIFY(m_fixture->import().faults().isEmpty());
    }

    void stopWhileCountingReadsNothing()
    {
        m_fixture->writeEpisodes(20);
        const auto job = m_fixture->makeJob();
        const FolderImportState stopped = job->run([&](const FolderImportState &state) {
            if (state.total == 5)
                job->stop();
        });
        QCOMPARE(stopped.phase, Phase::Stopped);
        QCOMPARE(stopped.total, 5);
        QVERIFY(!QFile::exists(m_fixture->path()));
    }

    void fullDiskLeavesASoundCatalogueThatGrowsOnceThereIsRoom()
    {
        m_fixture->writeEpisodes(2);
        QCOMPARE(m_fixture->run().added, 2);
        m_fixture->writeEpisodes(9, 2);
        FolderImportState state;
        {
            FullDisk disk;
            state = m_fixture->runUntil(1, [&](FolderImportJob &) { disk.fill(); });
        }
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure,
                 u"The disk is full: the subtitle catalogue “%1” cannot grow."_s.arg(m_fixture->path()));
        QCOMPARE(state.added, 0);
        QVERIFY(m_fixture->import().faults().isEmpty());
        const FolderImportState rest = m_fixture->run();
        QCOMPARE(rest.known, 2);
        QCOMPARE(rest.added, 7);
        QVERIFY(m_fixture->import().faults().isEmpty());
    }

    void fullDiskWithoutACatalogueIsSaidToo()
    {
        m_fixture->writeEpisodes(2);
        FullDisk disk;
        disk.fill();
        const FolderImportState state = m_fixture->run();
        QCOMPARE(state.phase, Phase::Failed);
        QVERIFY2(state.failure.startsWith(u"The disk is full"_s), qPrintable(state.failure));
        QVERIFY(!QFile::exists(m_fixture->path()));
    }

    void writerThatDoesNotEndIsWaitedForOnlySoLong()
    {
        m_fixture->writeEpisodes(1);
        QCOMPARE(m_fixture->run().added, 1);
        m_fixture->writeEpisodes(3, 1);
        SQLite::Database other(QFile::encodeName(m_fixture->path()).toStdString(), SQLite::OPEN_READWRITE);
        other.exec("BEGIN IMMEDIATE");
        const FolderImportState state = m_fixture->makeJob(100ms)->run([](const FolderImportState &) {});
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(
            state.failure,
            u"Another import is writing to the subtitle catalogue “%1”. Try again when it has ended."_s.arg(
                m_fixture->path()));
        other.exec("ROLLBACK");
        QCOMPARE(m_fixture->run().added, 2);
    }

    void catalogueThatCannotBeUsedIsLeftAsItIs_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("overwritten")
            << QByteArray(50'000, 'x')
            << u"The subtitle catalogue “%1” is damaged. Replace the file or remove it."_s;
        QTest::newRow("empty") << QByteArray()
                               << u"The subtitle catalogue “%1” is damaged. Replace the file or remove it."_s;
    }
    void catalogueThatCannotBeUsedIsLeftAsItIs()
    {
        QFETCH(const QByteArray, content);
        QFETCH(const QString, sentence);
        m_fixture->writeEpisodes(2);
        QFile file(m_fixture->path());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        const FolderImportState state = m_fixture->run();
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure, sentence.arg(m_fixture->path()));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), content);
    }

    void catalogueDamagedInTheMiddleIsSaid()
    {
        m_fixture->writeEpisodes(60);
        QCOMPARE(m_fixture->run().added, 60);
        QFile file(m_fixture->path());
        QVERIFY(file.open(QIODevice::ReadWrite));
        constexpr qint64 FirstPage = 4096;
        QVERIFY(file.size() > 3 * FirstPage && file.seek(FirstPage));
        QVERIFY(file.write(QByteArray(file.size() - FirstPage, '\xff')) > 0);
        file.close();
        const FolderImportState state = m_fixture->run();
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure,
                 u"The subtitle catalogue “%1” is damaged. Replace the file or remove it."_s.arg(
                     m_fixture->path()));
    }

    void catalogueWithoutAPlaceIsSaid()
    {
        m_fixture->writeEpisodes(1);
        const QString file = m_fixture->import().write(u"../in-the-way"_s, "a file");
        FolderImportJob job(file + u"/catalogue.sqlite"_s, m_fixture->folder(), 30s);
        const FolderImportState state = job.run([](const FolderImportState &) {});
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure,
                 u"The subtitle catalogue “%1/catalogue.sqlite” cannot be written."_s.arg(file));
    }
};

PLOVENDIX_TEST(FolderImportFailuresTest)
#include "FolderImportFailuresTest.moc"