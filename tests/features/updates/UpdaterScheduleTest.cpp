#include "UpdaterFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Automatic checks.
class UpdaterScheduleTest final : public QObject
{
    Q_OBJECT

private:
    UpdaterFixture m;

    /// The settings keep the date of a completed check.
    void waitForCheckAt(const QDateTime &date) { QTRY_COMPARE_WITH_TIMEOUT(m.lastCheck(), date, WaitLimit); }
    /// A failed check leaves only the wait for the next.
    void waitForQuiet() { QTRY_COMPARE_WITH_TIMEOUT(m.clock->pending().size(), 1, WaitLimit); }
    void switchAutomatic(bool on) { m.defaults().setObject(u"SUEnableAutomaticChecks"_s, on); }
    void setInterval(const QVariant &seconds)
    {
        m.defaults().setObject(u"SUScheduledCheckInterval"_s, seconds);
    }
    void startJustChecked(int interval)
    {
        m.defaults().setObject(u"SULastCheckTime"_s, m.clock->date());
        setInterval(interval);
        m.start();
    }
    /// Starts with a feed of these versions and waits for the first check's request.
    void startWith(const QStringList &versions, Delivery delivery = Delivery::Whole)
    {
        m.offerVersions(versions);
        m.answer.delivery = delivery;
        m.start();
        m.clock->advance(1min);
        m.waitForRequests(1);
    }
    /// Lets hours pass as a running program does: in many small steps.
    void letPass(std::chrono::minutes duration)
    {
        for (; duration > 0min; duration -= 10min)
            m.clock->advance(std::min(duration, 10min));
    }

private Q_SLOTS:
    void initTestCase() { registerUpdateScene(); }
    void init() { m.prepare(); }
    void cleanup() { m.clear(); }

    void waitDependsOnIntervalAndLastCheck_data()
    {
        QTest::addColumn<qint64>("interval");
        QTest::addColumn<qint64>("secondsAgo"); // no last check for 0
        QTest::addColumn<qint64>("wait");
        const auto row = [](const char *name, qint64 interval, qint64 ago, qint64 wait) {
            QTest::newRow(name) << interval << ago << wait;
        };
        row("never checked", 86400, 0, 0);
        row("just checked", 86400, 1, 86399);
        row("due this second", 86400, 86400, 0);
        row("long due", 86400, 900000, 0);
        row("no interval means a day", 0, 3600, 82800);
        row("a negative interval too", -5, 3600, 82800);
        row("never more than once an hour", 1, 60, 3540);
        row("a month", 2592000, 86400, 2505600);
        row("at most a year", std::numeric_limits<qint64>::max(), 86400, 365LL * 86400);
        row("a last check in the future", 86400, -1000000, 0);
    }
    void waitDependsOnIntervalAndLastCheck()
    {
        QFETCH(const qint64, interval);
        QFETCH(const qint64, secondsAgo);
        QFETCH(const qint64, wait);
        const QDateTime now(QDate(2030, 5, 6), QTime(7, 8), Qt::UTC);
        const QDateTime last =
            secondsAgo == 0 ? QDateTime() : now.addSecs(-secondsAgo).toOffsetFromUtc(9 * 3600);
        QCOMPARE(SUUpdater::waitFor(last, interval, now).count() / 1000, wait);
    }

    void checksAreAutomaticUnlessSwitchedOff()
    {
        m.start();
        QVERIFY(m.defaults().boolean(u"SUEnableAutomaticChecks"_s));
        switchAutomatic(false);
        QCOMPARE(m.clock->pending(), QList<Clock::Duration>());
        m.clock->advance(48h);
        QCOMPARE(m.server->requests().size(), 0);
        switchAutomatic(true);
        waitForCheckAt(m.clock->date());
    }

    void firstCheckComesAMinuteAfterTheStartInSilence()
    {
        m.offerVersions({u"1.5"_s});
        m.start();
        m.clock->advance(59s);
        QCOMPARE(m.clock->pending(), QList<Clock::Duration>{1s});
        QCOMPARE(m.server->requests().size(), 0);
        m.clock->advance(1s);
        waitForCheckAt(m.clock->date());
        QCOMPARE(m.server->requests().size(), 1);
        QVERIFY(m.quietShows.isEmpty());
    }

    void newVersionShowsItselfWithoutTheFocus()
    {
        startWith({u"1.6"_s});
        m.waitFor(u"1.6 is available"_s);
        QCOMPARE(m.quietShows, QList<bool>{true});
    }

    void failuresAreSilentAndTriedAgainAfterAnHour_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("forged");
        QTest::newRow("unavailable") << 503 << false;
        QTest::newRow("not signed") << 200 << true;
    }
    void failuresAreSilentAndTriedAgainAfterAnHour()
    {
        QFETCH(const int, status);
        QFETCH(const bool, forged);
        m.offerVersions({u"1.6"_s}, !forged);
        m.answer.status = status;
        m.start();
        m.clock->advance(1min);
        m.waitForRequests(1);
        waitForQuiet();
        QVERIFY(!m.lastCheck().isValid());
        m.clock->advance(59min);
        QCOMPARE(m.server->requests().size(), 1);
        m.clock->advance(1min);
        m.waitForRequests(2);
        waitForQuiet();
        QVERIFY(m.quietShows.isEmpty());
    }

    void intervalPassesBetweenChecks()
    {
        startJustChecked(86400);
        QCOMPARE(m.clock->pending(), QList<Clock::Duration>{1h}); // the date is looked at again
        letPass(24h - 10min);
        QCOMPARE(m.server->requests().size(), 0);
        m.clock->advance(10min);
        const QDateTime first = m.clock->date();
        waitForCheckAt(first);
        letPass(24h - 10min);
        QCOMPARE(m.server->requests().size(), 1);
        m.clock->advance(10min);
        waitForCheckAt(first.addDays(1));
    }

    void registeredTextCountsAsSeconds()
    {
        startJustChecked(7200);
        setInterval(u"3600"_s);
        m.clock->advance(59min);
        QCOMPARE(m.clock->pending(), QList<Clock::Duration>{1min});
    }

    void anotherIntervalTakesEffectAtOnce()
    {
        startJustChecked(3600);
        m.clock->advance(30min);
        setInterval(86400);
        letPass(2h);
        QCOMPARE(m.server->requests().size(), 0);
        setInterval(3600);
        waitForCheckAt(m.clock->date());
    }

    void switchingOffEndsARunningCheck()
    {
        startWith({u"1.6"_s}, Delivery::Silent);
        switchAutomatic(false);
        QTRY_COMPARE_WITH_TIMEOUT(m.server->openConnections(), 0, WaitLimit);
        QCOMPARE(m.clock->pending(), QList<Clock::Duration>());
        QVERIFY(m.quietShows.isEmpty());
    }

    void switchingOffLeavesARequestedCheck()
    {
        m.answer.delivery = Delivery::Silent;
        m.start();
        m.updater->checkForUpdates(nullptr);
        m.waitForRequests(1);
        switchAutomatic(false);
        m.clock->advance(30s);
        m.waitFor(u"did not answer in time"_s);
    }

    void askingTakesOverARunningCheck()
    {
        startWith({u"1.6"_s}, Delivery::Dripped);
        m.updater->checkForUpdates(nullptr);
        m.waitFor(u"Checking"_s);
        m.server->setDripInterval(0);
        m.waitFor(u"1.6 is available"_s);
        QCOMPARE(m.server->requests().size(), 1);
    }

    void skippedVersionStaysAway()
    {
        m.defaults().setObject(u"SUSkippedVersion"_s, u"1.6"_s);
        startWith({u"1.6"_s});
        waitForCheckAt(m.clock->date());
        QVERIFY(m.quietShows.isEmpty());
        m.offerVersions({u"1.6"_s, u"1.7"_s});
        letPass(24h);
        m.waitFor(u"1.7 is available"_s);
    }

    void openWindowIsNotReplacedAndAClosedOfferComesAgain()
    {
        startWith({u"1.6"_s});
        m.waitFor(u"1.6 is available"_s);
        letPass(72h);
        QCOMPARE(m.server->requests().size(), 1);
        m.press("laterButton");
        QVERIFY(!m.window());
        letPass(1h);
        m.waitFor(u"1.6 is available"_s);
        QCOMPARE(m.server->requests().size(), 2);
    }

    void cancelledCheckIsNotRepeatedAtOnce()
    {
        m.start();
        m.clock->advance(30s);
        m.answer.delivery = Delivery::Silent;
        m.updater->checkForUpdates(nullptr);
        m.waitForRequests(1);
        m.press("cancelButton");
        QTRY_COMPARE_WITH_TIMEOUT(m.server->openConnections(), 0, WaitLimit);
        m.clock->advance(59min);
        QCOMPARE(m.server->requests().size(), 1);
    }

    void wakingFromLongSleepChecksWithinTheHour()
    {
        startJustChecked(86400);
        m.clock->setDate(m.clock->date().addDays(3));
        m.clock->advance(1h);
        waitForCheckAt(m.clock->date());
    }
};

PLOVENDIX_GUI_TEST(UpdaterScheduleTest)
#include "UpdaterScheduleTest.moc"
