#include "ImportFixture.h"

#include <base/MainQueue.h>
#include <sources/catalogue/import/CatalogueReports.h>
#include <sources/catalogue/import/FolderImport.h>
#include <tests/support/TestMain.h>

#include <SQLiteCpp/SQLiteCpp.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Phase = FolderImportState::Phase;

/// An import of a folder in the background, as the preferences see it.
class FolderImportTest final : public QObject
{
    Q_OBJECT

    static constexpr int MoreThanABatch = 300;

    Sandbox m_sandbox;
    std::unique_ptr<ImportFixture> m_fixture;
    std::unique_ptr<FolderImport> m_import;
    QList<FolderImportState> m_states; // those that were told, on the main thread

    void makeImport(const FolderImport::Options &options = {0ms, 30s, 5s})
    {
        m_states.clear();
        m_import = std::make_unique<FolderImport>(m_fixture->path(), options);
        connect(m_import.get(), &FolderImporting::changed, this, [this] {
            QVERIFY(MainQueue::isMainThread());
            m_states += m_import->state();
        });
    }
    void importFolder()
    {
        makeImport();
        m_import->start(m_fixture->folder());
        QTRY_VERIFY(!m_import->state().isRunning());
    }
    void writeEpisodes(int count, int first = 0) const
    {
        for (int i = first; i < count; ++i)
            m_fixture->write(u"Harbour.Lights.S01E%1.en.srt"_s.arg(i + 1, 3, 10, QLatin1Char('0')),
                             ImportFixture::cue(QString::number(i)));
    }
    /// What is in a catalogue, in an order of its own.
    static QStringList contentsOf(const QString &catalogue)
    {
        QStringList lines;
        const Result<void> listed = CatalogueReports::list(catalogue, {}, [&](const QStringList &row) {
            lines += row.join(u'|');
            return true;
        });
        if (!listed)
            return {listed.error().localizedDescription};
        lines.sort();
        return lines;
    }
    /// Somebody who is writing to the catalogue, for as long as this lives.
    std::unique_ptr<SQLite::Database> otherWriter() const
    {
        auto database = std::make_unique<SQLite::Database>(QFile::encodeName(m_fixture->path()).toStdString(),
                                                           SQLite::OPEN_READWRITE);
        database->exec("BEGIN IMMEDIATE");
        return database;
    }

private Q_SLOTS:
    void initTestCase() { MainQueue::shared(); }
    void init()
    {
        m_fixture =
            std::make_unique<ImportFixture>(m_sandbox, QString::fromLatin1(QTest::currentTestFunction()));
    }
    void cleanup() { m_import.reset(); }

    void progressArrivesOnTheMainThreadInOrder()
    {
        writeEpisodes(1);
        m_fixture->add();
        writeEpisodes(MoreThanABatch, 1);
        auto writer = otherWriter();
        makeImport();
        m_import->start(m_fixture->folder());
        QCOMPARE(m_states.size(), 1); // the rest comes on later turns
        QCOMPARE(m_states.first().phase, Phase::Counting);
        // It waits now with what it has read, which is known all the same.
        QTRY_VERIFY(m_import->state().files > 200);
        QCOMPARE(m_import->state().phase, Phase::Reading);
        QCOMPARE(m_import->state().total, MoreThanABatch);
        QCOMPARE(m_import->state().added, 0);
        QVERIFY(m_import->state().current.startsWith(u"Harbour.Lights.S01E"_s));
        writer.reset();
        QTRY_COMPARE(m_import->state().phase, Phase::Finished);
        QCOMPARE(m_import->state().files, MoreThanABatch);
        QCOMPARE(m_import->state().added, MoreThanABatch - 1);
        QCOMPARE(m_import->state().known, 1);
        QCOMPARE(m_fixture->search(u"harbour lights"_s).size(), MoreThanABatch);

        for (qsizetype i = 1; i < m_states.size(); ++i) {
            QVERIFY(m_states[i].phase >= m_states[i - 1].phase);
            QVERIFY(m_states[i].files >= m_states[i - 1].files);
            QVERIFY(m_states[i].added >= m_states[i - 1].added);
            QVERIFY(m_states[i].total >= m_states[i - 1].total);
        }
    }

    void statesComeOnlySoOften()
    {
        writeEpisodes(100);
        makeImport({50ms, 30s, 5s});
        MainQueue &queue = MainQueue::shared();
        queue.useManualClock();
        const auto after = [&](std::chrono::milliseconds time) {
            queue.advance(time);
            queue.runUntilIdle();
            return m_states.size();
        };
        m_import->start(m_fixture->folder());
        QTRY_COMPARE(contentsOf(m_fixture->path()).size(), 100); // the thread has much to say by now
        QCOMPARE(after(49ms), 1);
        QCOMPARE(after(1ms), 2);
        QTRY_VERIFY((after(50ms), !m_import->state().isRunning()));
        queue.useSystemClock();
        QCOMPARE(m_import->state().added, 100);
    }

    void entersWhatTheCommandEnters()
    {
        writeEpisodes(3);
        m_fixture->write(u"deep/Night.Ferry.2020.srt"_s, ImportFixture::cue(u"a"_s));
        m_fixture->writeArchive(u"more.zip"_s, {{u"Paper.Boat.2018.de.srt"_s, ImportFixture::cue(u"b"_s)},
                                                {u"Tin.Star.2017.fr.srt"_s, ImportFixture::cue(u"c"_s)}});
        m_fixture->add();
        const QStringList expected = contentsOf(m_fixture->path());
        QCOMPARE(expected.size(), 6);
        QVERIFY(QFile::remove(m_fixture->path()));
        importFolder();
        QCOMPARE(m_import->state().phase, Phase::Finished);
        QCOMPARE(m_import->state().total, 5);
        QCOMPARE(m_import->state().added, 6);
        QCOMPARE(contentsOf(m_fixture->path()), expected);
    }

    void sameFolderAgainChangesNothing()
    {
        writeEpisodes(5);
        importFolder();
        const QStringList before = contentsOf(m_fixture->path());
        m_import->start(m_fixture->folder());
        QTRY_VERIFY(!m_import->state().isRunning());
        QCOMPARE(m_import->state().phase, Phase::Finished);
        QCOMPARE(m_import->state().added, 0);
        QCOMPARE(m_import->state().known, 5);
        QCOMPARE(contentsOf(m_fixture->path()), before);
    }

    void oneThatRunsIsNotDisturbedByAnother()
    {
        writeEpisodes(MoreThanABatch);
        m_fixture->write(u"../other/Paper.Boat.2018.de.srt"_s, ImportFixture::cue(u"b"_s));
        makeImport();
        m_import->start(m_fixture->folder());
        m_import->start(m_fixture->folder() + u"/../other"_s);
        QTRY_VERIFY(!m_import->state().isRunning());
        QCOMPARE(m_import->state().folder, m_fixture->folder());
        QCOMPARE(m_import->state().added, MoreThanABatch);
        QCOMPARE(m_fixture->search(u"paper boat"_s), QStringList());
    }

    void folderWithoutSubtitlesMakesNoCatalogue()
    {
        m_fixture->write(u"notes.md"_s, "nothing");
        importFolder();
        QCOMPARE(m_import->state().phase, Phase::Finished);
        QCOMPARE(m_import->state().total, 0);
        QVERIFY(!QFile::exists(m_fixture->path()));
    }

    void stopWhileAnotherWritesEndsAtOnceAndALaterRunCompletes()
    {
        writeEpisodes(1);
        m_fixture->add();
        writeEpisodes(MoreThanABatch, 1);
        auto writer = otherWriter();
        makeImport();
        m_import->start(m_fixture->folder());
        QTRY_VERIFY(m_import->state().files > 200); // read, and waiting to enter them
        m_import->stop();
        QCOMPARE(m_import->state().phase, Phase::Stopping);
        QTRY_COMPARE(m_import->state().phase, Phase::Stopped);
        writer.reset();
        QVERIFY(m_fixture->faults().isEmpty());
        QCOMPARE(m_fixture->search(u"harbour lights"_s).size(), 1);

        m_import->start(m_fixture->folder());
        QTRY_COMPARE(m_import->state().phase, Phase::Finished);
        QCOMPARE(m_import->state().known, 1);
        QCOMPARE(m_import->state().added, MoreThanABatch - 1);
        QVERIFY(m_fixture->faults().isEmpty());
    }

    void statesOnTheirWayDoNotUndoAStop()
    {
        writeEpisodes(2 * MoreThanABatch);
        makeImport();
        bool isStopped = false;
        connect(m_import.get(), &FolderImporting::changed, this, [&] {
            if (isStopped || m_import->state().files == 0)
                return;
            isStopped = true;
            // Meanwhile more of them set out.
            const QDeadlineTimer deadline(10s);
            while (contentsOf(m_fixture->path()).size() < 200 && !deadline.hasExpired()) {
            }
            m_import->stop();
        });
        m_import->start(m_fixture->folder());
        QTRY_VERIFY(!m_import->state().isRunning());
        QVERIFY(isStopped);
        const auto stop =
            std::find_if(m_states.cbegin(), m_states.cend(),
                         [](const FolderImportState &state) { return state.phase == Phase::Stopping; });
        QVERIFY(stop != m_states.cend());
        for (auto state = stop; state != m_states.cend() - 1; ++state)
            QCOMPARE(state->phase, Phase::Stopping);
        QCOMPARE(m_fixture->faults(), QStringList());
    }

    void endOfTheProgramStopsAnImportThatWaits()
    {
        writeEpisodes(1);
        m_fixture->add();
        writeEpisodes(MoreThanABatch, 1);
        const auto writer = otherWriter();
        makeImport({0ms, 1h, 1h}); // whichever of them counted, this test would not end
        m_import->start(m_fixture->folder());
        QTRY_VERIFY(m_import->state().files > 200);
        m_states.clear();
        m_import.reset();
        MainQueue::shared().runUntilIdle();
        QVERIFY(m_states.isEmpty());
    }

    void stopWithoutAnImportDoesNothing()
    {
        makeImport();
        m_import->stop();
        QVERIFY(m_states.isEmpty());
        QCOMPARE(m_import->state().phase, Phase::Idle);
    }
};

PLOVENDIX_TEST(FolderImportTest)
#include "FolderImportTest.moc"
