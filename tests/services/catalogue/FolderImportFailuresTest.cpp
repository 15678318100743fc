#include "ImportFixture.h"
#include "Nobody.h"

#include <services/catalogue/folder/FolderImportJob.h>

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <QDir>
#include <QFile>
#include <QTest>

#include <cerrno>
#include <sys/stat.h>

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

/// What keeps an import from its end, met on the thread that reads, at a moment that the test chooses.
class FolderImportFailuresTest final : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    std::unique_ptr<ImportFixture> m_fixture;

    std::unique_ptr<FolderImportJob> makeJob(std::chrono::milliseconds patience = 30s) const
    {
        return std::make_unique<FolderImportJob>(m_fixture->path(), m_fixture->folder(), patience);
    }
    FolderImportState run(const FolderImportJob::Tell &tell = [](const FolderImportState &) {}) const
    {
        return makeJob()->run(tell);
    }
    /// Runs it, and does `what` once that many files were looked at.
    FolderImportState runUntil(qint64 files, const std::function<void(FolderImportJob &)> &what) const
    {
        const auto job = makeJob();
        bool isDone = false;
        return job->run([&](const FolderImportState &state) {
            if (isDone || state.phase != Phase::Reading || state.files < files)
                return;
            isDone = true;
            what(*job);
        });
    }
    void writeEpisodes(int count, int first = 0) const
    {
        for (int i = first; i < count; ++i)
            m_fixture->write(u"Harbour.Lights.S01E%1.en.srt"_s.arg(i + 1, 2, 10, QLatin1Char('0')),
                             ImportFixture::cue(QString::number(i)));
    }
    void letEverybodyIn() const
    {
        for (const QString &folder :
             {m_sandbox.path({}), QFileInfo(m_fixture->path()).path(), m_fixture->folder()})
            QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0777), 0);
    }

private Q_SLOTS:
    void init()
    {
        const char *row = QTest::currentDataTag();
        m_fixture =
            std::make_unique<ImportFixture>(m_sandbox, QString::fromLatin1(QTest::currentTestFunction()) +
                                                           QString::fromLatin1(row ? row : ""));
    }

    void stopInTheMiddleKeepsWhatWasReadAndALaterRunCompletes()
    {
        writeEpisodes(20);
        const FolderImportState stopped = runUntil(8, [](FolderImportJob &job) { job.stop(); });
        QCOMPARE(stopped.phase, Phase::Stopped);
        QCOMPARE(stopped.files, 8);
        QCOMPARE(stopped.added, 8);
        QVERIFY(m_fixture->faults().isEmpty());
        const FolderImportState rest = run();
        QCOMPARE(rest.phase, Phase::Finished);
        QCOMPARE(rest.known, 8);
        QCOMPARE(rest.added, 12);
        QVERIFY(m_fixture->faults().isEmpty());
    }

    void stopWhileCountingReadsNothing()
    {
        writeEpisodes(20);
        const auto job = makeJob();
        const FolderImportState stopped = job->run([&](const FolderImportState &state) {
            if (state.total == 5)
                job->stop();
        });
        QCOMPARE(stopped.phase, Phase::Stopped);
        QCOMPARE(stopped.total, 5);
        QVERIFY(!QFile::exists(m_fixture->path()));
    }

    void folderThatIsGoneIsNamed()
    {
        QVERIFY(QDir(m_fixture->folder()).removeRecursively());
        const FolderImportState state = run();
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure,
                 u"The folder “%1” is no longer there. What was added before is in the catalogue."_s.arg(
                     m_fixture->folder()));
    }

    void folderThatMayNotBeReadIsNotTakenForAnEmptyOne()
    {
        writeEpisodes(1);
        letEverybodyIn();
        QCOMPARE(::chmod(QFile::encodeName(m_fixture->folder()).constData(), 0), 0);
        FolderImportState state;
        {
            const Nobody nobody;
            state = run();
        }
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure, u"You are not allowed to read the folder “%1”."_s.arg(m_fixture->folder()));
        QCOMPARE(::chmod(QFile::encodeName(m_fixture->folder()).constData(), 0700), 0);
    }

    void fileThatMayNotBeReadIsReadOnceItMay_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("subtitle") << u"Night.Ferry.2020.en.srt"_s;
        QTest::newRow("archive") << u"Night.Ferry.2020.zip"_s;
    }
    void fileThatMayNotBeReadIsReadOnceItMay()
    {
        QFETCH(const QString, name);
        letEverybodyIn();
        const QByteArray subtitle = ImportFixture::cue(u"a"_s);
        const QString path = name.endsWith(".zip"_L1)
                                 ? m_fixture->writeArchive(name, {{u"Night.Ferry.2020.en.srt"_s, subtitle}})
                                 : m_fixture->write(name, subtitle);
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0), 0);
        FolderImportState state;
        {
            const Nobody nobody;
            state = run();
        }
        QCOMPARE(state.phase, Phase::Finished);
        QCOMPARE(state.refused, 1);
        QCOMPARE(state.firstRefusal, u"“%1” cannot be opened."_s.arg(name));
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0644), 0);
        QCOMPARE(run().added, 1);
    }

    void folderBelowThatMayNotBeReadIsCountedAndReadOnceItMay()
    {
        m_fixture->write(u"open/Paper.Boat.2018.de.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->write(u"closed/Night.Ferry.2020.en.srt"_s, ImportFixture::cue(u"b"_s));
        letEverybodyIn();
        const QByteArray closed = QFile::encodeName(m_fixture->folder()) + "/closed";
        QCOMPARE(::chmod(closed.constData(), 0), 0);
        FolderImportState state;
        {
            const Nobody nobody;
            state = run();
        }
        QCOMPARE(::chmod(closed.constData(), 0755), 0);
        QCOMPARE(state.phase, Phase::Finished);
        QCOMPARE(state.total, 2);
        QCOMPARE(state.files, 2);
        QCOMPARE(state.added, 1);
        QCOMPARE(state.refused, 1);
        QCOMPARE(state.firstRefusal, u"“closed” cannot be opened."_s);
        QCOMPARE(run().added, 1);
    }

    void folderWithNothingButOneThatMayNotBeReadIsNotWithoutFiles()
    {
        m_fixture->write(u"closed/Night.Ferry.2020.en.srt"_s, ImportFixture::cue(u"b"_s));
        letEverybodyIn();
        const QByteArray closed = QFile::encodeName(m_fixture->folder()) + "/closed";
        QCOMPARE(::chmod(closed.constData(), 0), 0);
        FolderImportState state;
        {
            const Nobody nobody;
            state = run();
        }
        QCOMPARE(::chmod(closed.constData(), 0755), 0);
        QCOMPARE(state.total, 1);
        QCOMPARE(state.refused, 1);
    }

    void folderThatVanishesIsSaidAndTakesNothingWithIt()
    {
        writeEpisodes(6);
        QCOMPARE(run().added, 6);
        const FolderImportState state = runUntil(
            2, [this](FolderImportJob &) { QVERIFY(QDir(m_fixture->folder()).removeRecursively()); });
        QCOMPARE(state.phase, Phase::Failed);
        QVERIFY(state.failure.startsWith(u"The folder “%1” is no longer there."_s.arg(m_fixture->folder())));
        QCOMPARE(state.known, 2);
        QCOMPARE(m_fixture->search(u"harbour lights"_s).size(), 6);
        QVERIFY(state.firstRefusal.endsWith(u"” is no longer there."_s));
        QVERIFY(m_fixture->faults().isEmpty());
    }

    void placeOfAMissingDiskIsSaidAndTakesNothingWithIt()
    {
        writeEpisodes(6);
        QCOMPARE(run().added, 6);
        QVERIFY(QDir(m_fixture->folder()).removeRecursively());
        QVERIFY(QDir().mkpath(m_fixture->folder()));
        const FolderImportState state = run();
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure,
                 u"There are no subtitle files in the folder “%1” any more. What was added before"
                 " is in the catalogue."_s.arg(m_fixture->folder()));
        QCOMPARE(m_fixture->search(u"harbour lights"_s).size(), 6);
        QVERIFY(m_fixture->faults().isEmpty());
    }

    void folderThatNeverHadAnyIsNoFailure()
    {
        writeEpisodes(6);
        QCOMPARE(run().added, 6);
        m_fixture->write(u"../other/notes.md"_s, "nothing");
        FolderImportJob job(m_fixture->path(), m_fixture->folder() + u"/../other"_s, 30s);
        const FolderImportState state = job.run([](const FolderImportState &) {});
        QCOMPARE(state.phase, Phase::Finished);
        QCOMPARE(state.total, 0);
        QCOMPARE(state.refused, 0);
    }

    void fullDiskLeavesASoundCatalogueThatGrowsOnceThereIsRoom()
    {
        writeEpisodes(2);
        QCOMPARE(run().added, 2);
        writeEpisodes(9, 2);
        FolderImportState state;
        {
            FullDisk disk;
            state = runUntil(1, [&](FolderImportJob &) { disk.fill(); });
        }
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure,
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
        writeEpisodes(2);
        FullDisk disk;
        disk.fill();
        const FolderImportState state = run();
        QCOMPARE(state.phase, Phase::Failed);
        QVERIFY2(state.failure.startsWith(u"The disk is full"_s), qPrintable(state.failure));
        QVERIFY(!QFile::exists(m_fixture->path()));
    }

    void writerThatDoesNotEndIsWaitedForOnlySoLong()
    {
        writeEpisodes(1);
        QCOMPARE(run().added, 1);
        writeEpisodes(3, 1);
        SQLite::Database other(QFile::encodeName(m_fixture->path()).toStdString(), SQLite::OPEN_READWRITE);
        other.exec("BEGIN IMMEDIATE");
        const FolderImportState state = makeJob(100ms)->run([](const FolderImportState &) {});
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(
            state.failure,
            u"Another import is writing to the subtitle catalogue “%1”. Try again when it has ended."_s.arg(
                m_fixture->path()));
        other.exec("ROLLBACK");
        QCOMPARE(run().added, 2);
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
        writeEpisodes(2);
        QFile file(m_fixture->path());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        const FolderImportState state = run();
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure, sentence.arg(m_fixture->path()));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), content);
    }

    void catalogueDamagedInTheMiddleIsSaid()
    {
        writeEpisodes(60);
        QCOMPARE(run().added, 60);
        QFile file(m_fixture->path());
        QVERIFY(file.open(QIODevice::ReadWrite));
        constexpr qint64 FirstPage = 4096;
        QVERIFY(file.size() > 3 * FirstPage && file.seek(FirstPage));
        QVERIFY(file.write(QByteArray(file.size() - FirstPage, '\xff')) > 0);
        file.close();
        const FolderImportState state = run();
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure,
                 u"The subtitle catalogue “%1” is damaged. Replace the file or remove it."_s.arg(
                     m_fixture->path()));
    }

    void catalogueWithoutAPlaceIsSaid()
    {
        writeEpisodes(1);
        const QString file = m_fixture->write(u"../in-the-way"_s, "a file");
        FolderImportJob job(file + u"/catalogue.sqlite"_s, m_fixture->folder(), 30s);
        const FolderImportState state = job.run([](const FolderImportState &) {});
        QCOMPARE(state.phase, Phase::Failed);
        QCOMPARE(state.failure,
                 u"The subtitle catalogue “%1/catalogue.sqlite” cannot be written."_s.arg(file));
    }

    void firstRefusalIsASentence_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("page") << u"deep/page.srt"_s << QByteArray("<!doctype html><html></html>")
                              << u"“deep/page.srt” is no subtitle."_s;
        QTest::newRow("large") << u"large.srt"_s << QByteArray(9 * 1024 * 1024, 'x')
                               << u"“large.srt” is too large for a subtitle."_s;
        QTest::newRow("packed") << u"packed.srt"_s << QByteArray("7z\xbc\xaf\x27\x1c and no more of it")
                                << u"“packed.srt” cannot be unpacked."_s;
        QTest::newRow("archive") << u"more.zip"_s << QByteArray("no archive")
                                 << u"“more.zip” is damaged or of an unknown kind."_s;
        QTest::newRow("long name") << QString(100, u'a') + QString(100, u'b') + u".srt"_s << QByteArray("no")
                                   << u"“%1…%2.srt” is no subtitle."_s.arg(QString(30, u'a'),
                                                                           QString(26, u'b'));
        QTest::newRow("lines") << u"two\nlines.srt"_s << QByteArray("no")
                               << u"“two lines.srt” is no subtitle."_s;
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

    void lockedArchiveIsSaid()
    {
        m_fixture->writeArchive(u"locked.zip"_s, {{u"Night.Ferry.2020.srt"_s, ImportFixture::cue(u"a"_s)}},
                                "secret");
        QCOMPARE(run().firstRefusal, u"“locked.zip” is protected by a password."_s);
    }
};

QTEST_GUILESS_MAIN(FolderImportFailuresTest)
#include "FolderImportFailuresTest.moc"
