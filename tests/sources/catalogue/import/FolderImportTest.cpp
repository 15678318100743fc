#include "ImportFixture.h"

#include <base/MainQueue.h>
#include <sources/catalogue/import/FolderImport.h>
#include <tests/support/TestMain.h>

#include <QFile>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// An import of a folder in the background, as the preferences see it.
class FolderImportTest final : public QObject
{
    Q_OBJECT

    using Phase = FolderImportState::Phase;
    static constexpr int MoreThanABatch = 300;

    Sandbox m_sandbox;
    std::unique_ptr<ImportFixture> m_fixture;
    std::unique_ptr<FolderImport> m_import;
    QList<FolderImportState> m_states; // those that were told, on the main thread

    const FolderImportState &state() const { return m_import->state(); }
    void start(const FolderImportTimes &times = {0ms, 30s, 5s})
    {
        m_states.clear();
        m_import = std::make_unique<FolderImport>(m_fixture->path(), times);
        connect(m_import.get(), &FolderImporting::changed, this, [this] {
            QVERIFY(MainQueue::isMainThread());
            m_states += m_import->state();
        });
        m_import->start(m_fixture->folder());
    }
    /// Enters one episode and writes many others, which a returned writer keeps from being entered.
    std::unique_ptr<SQLite::Database> writerInTheWay() const
    {
        m_fixture->writeEpisodes(1);
        m_fixture->add();
        m_fixture->writeEpisodes(MoreThanABatch, 1);
        auto writer = m_fixture->connection();
        writer->exec("BEGIN IMMEDIATE");
        return writer;
    }
    /// Lets time pass for the looks at the thread, and gives how many states there were.
    qsizetype statesAfter(std::chrono::milliseconds time) const
    {
        MainQueue::shared().advance(time);
        MainQueue::shared().runUntilIdle();
        return m_states.size();
    }

private Q_SLOTS:
    void initTestCase() { MainQueue::shared(); }
    void init() { m_fixture = std::make_unique<ImportFixture>(m_sandbox); }
    void cleanup()
    {
        m_import.reset();
        MainQueue::shared().useSystemClock();
    }

    void progressArrivesOnTheMainThreadInOrder()
    {
        auto writer = writerInTheWay();
        start();
        QCOMPARE(m_states.size(), 1); // the rest comes on later turns
        QCOMPARE(m_states.first().phase, Phase::Counting);
        // It waits now with what it has read, which is known all the same.
        QTRY_VERIFY(state().files > 200);
        QCOMPARE(state().phase, Phase::Reading);
        QCOMPARE(state().total, MoreThanABatch);
        QCOMPARE(state().added, 0);
        QVERIFY(state().current.startsWith(u"Harbour.Lights.S01E"_s));
        writer.reset();
        QTRY_COMPARE(state().phase, Phase::Finished);
        QCOMPARE(state().files, MoreThanABatch);
        QCOMPARE(state().added, MoreThanABatch - 1);
        QCOMPARE(state().known, 1);
        QCOMPARE(m_fixture->search(u"harbour lights"_s).size(), MoreThanABatch);
        for (qsizetype i = 1; i < m_states.size(); ++i) {
            QVERIFY(m_states[i].phase >= m_states[i - 1].phase);
            QVERIFY(m_states[i].files >= m_states[i - 1].files);
            QVERIFY(m_states[i].total >= m_states[i - 1].total);
        }
    }

    void statesComeOnlySoOften()
    {
        const auto writer = writerInTheWay();
        MainQueue::shared().useManualClock();
        start({50ms, 1s, 5s}); // the thread has much to say
        QCOMPARE(statesAfter(49ms), 1);
        QCOMPARE(statesAfter(1ms), 2);
        QTRY_COMPARE((statesAfter(50ms), state().phase), Phase::Failed);
    }

    void oneThatRunsIsNotDisturbedByAnother()
    {
        m_fixture->writeEpisodes(MoreThanABatch);
        m_fixture->write(u"../other/Paper.Boat.2018.de.srt"_s, ImportFixture::cue(u"b"_s));
        start();
        m_import->start(m_fixture->folder() + u"/../other"_s);
        QTRY_VERIFY(!state().isRunning());
        QCOMPARE(state().folder, m_fixture->folder());
        QCOMPARE(state().added, MoreThanABatch);
        QCOMPARE(m_fixture->search(u"paper boat"_s), QStringList());
    }

    void stopWhileAnotherWritesEndsAtOnceAndALaterRunCompletes()
    {
        auto writer = writerInTheWay();
        start({1ms, 1h, 5s});
        QTRY_VERIFY(state().files > 200); // read, and waiting to enter them
        MainQueue::shared().useManualClock();
        m_import->stop();
        QCOMPARE(state().phase, Phase::Stopping);
        statesAfter(1ms);
        QVERIFY(state().phase != Phase::Reading); // what the thread still says does not undo the stop
        QTRY_COMPARE((statesAfter(1ms), state().phase), Phase::Stopped);
        MainQueue::shared().useSystemClock();
        writer.reset();
        QVERIFY(m_fixture->faults().isEmpty());
        QCOMPARE(m_fixture->search(u"harbour lights"_s).size(), 1);

        m_import->start(m_fixture->folder());
        QTRY_COMPARE(state().phase, Phase::Finished);
        QCOMPARE(state().known, 1);
        QCOMPARE(state().added, MoreThanABatch - 1);
    }

    void endOfTheProgramStopsAnImportThatWaits()
    {
        const auto writer = writerInTheWay();
        start({0ms, 1h, 1h}); // this test would not end if one of them counted
        QTRY_VERIFY(state().files > 200);
        m_states.clear();
        m_import.reset();
        MainQueue::shared().runUntilIdle();
        QVERIFY(m_states.isEmpty());
    }

    void stopWithoutAnImportDoesNothing()
    {
        start();
        QTRY_COMPARE(state().phase, Phase::Finished);
        m_states.clear();
        m_import->stop();
        QVERIFY(m_states.isEmpty());
        QCOMPARE(state().phase, Phase::Finished);
    }
};

PLOVENDIX_TEST(FolderImportTest)
#include "FolderImportTest.moc"
