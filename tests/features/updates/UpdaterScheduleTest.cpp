#include "UpdaterFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Checks that come by themselves.
class UpdaterScheduleTest final : public QObject
{
    Q_OBJECT

private:
    UpdaterFixture m;

    void waitForRequests(qsizetype count)
    {
        QTRY_COMPARE_WITH_TIMEOUT(m.server->requests().size(), count, WaitLimit);
    }
    /// A completed check is known by its date.
    void waitForCheckAt(const QDateTime &date) { QTRY_COMPARE_WITH_TIMEOUT(m.lastCheck(), date, WaitLimit); }
    /// A check that failed leaves nothing but the wait for the next.
    void waitForQuiet() { QTRY_COMPARE_WITH_TIMEOUT(m.clock->pending().size(), 1, WaitLimit); }
    void startJustChecked(int interval)
    {
        m.defaults().setObject(u"SULastCheckTime"_s, m.clock->date());
        m.defaults().setObject(u"SUScheduledCheckInterval"_s, interval);
        m.start();
    }
    /// Lets hours pass as a running program does: in many small steps.
    void letPass(std::chrono::minutes duration)
    {
        for (; duration > 0min; duration -= 10min)
            m.clock->advance(std::min(duration, 10min));
    }

private Q_SLOTS:
    void init() { m.prepare(); }
    void cleanup() { m.clear(); }

    void checksAreAutomaticUnlessSwitchedOff()
    {
        m.start();
        QVERIFY(m.defaults().boolean(u"SUEnableAutomaticChecks"_s));
        m.defaults().setObject(u"SUEnableAutomaticChecks"_s, false);
        QCOMPARE(m.clock->pending(), QList<Clock::Duration>());
        m.clock->advance(48h);
        QCOMPARE(m.server->requests().size(), 0);
    }

    void theFirstCheckComesAMinuteAfterTheStart()
    {
        m.start();
        m.clock->advance(59s);
        QCOMPARE(m.clock->pending(), QList<Clock::Duration>{1s});
        QCOMPARE(m.server->requests().size(), 0);
        m.clock->advance(1s);
        waitForCheckAt(m.clock->date());
        QCOMPARE(m.server->requests().size(), 1);
    }

    void nothingNewIsSilent()
    {
        m.offerVersions({u"1.5"_s});
        m.start();
        m.clock->advance(1min);
        waitForCheckAt(m.clock->date());
        QVERIFY(m.window->states.isEmpty());
    }

    void aNewVersionShowsItself()
    {
        m.offerVersions({u"1.6"_s});
        m.start();
        m.clock->advance(1min);
        QTRY_COMPARE_WITH_TIMEOUT(m.window->states, QStringList{u"by itself 1.6"_s}, WaitLimit);
    }

    void failuresAreSilentAndTriedAgainAfterAnHour_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("forged");
        QTest::newRow("unavailable") << 503 << false;
        QTest::newRow("gone") << 404 << false;
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
        waitForRequests(1);
        waitForQuiet();
        QVERIFY(!m.lastCheck().isValid());
        m.clock->advance(59min);
        QCOMPARE(m.server->requests().size(), 1);
        m.clock->advance(1min);
        waitForRequests(2);
        waitForQuiet();
        QVERIFY(m.window->states.isEmpty());
    }

    void theIntervalPassesBetweenChecks()
    {
        startJustChecked(86400);
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

    void aMonthIsNoMoreThanATimerCanWait()
    {
        startJustChecked(2592000);
        QCOMPARE(m.clock->pending(), QList<Clock::Duration>{1h});
        letPass(30 * 24h - 10min);
        QCOMPARE(m.server->requests().size(), 0);
        m.clock->advance(10min);
        waitForRequests(1);
    }

    void theRegisteredTextCountsAsSeconds()
    {
        startJustChecked(7200);
        m.defaults().setObject(u"SUScheduledCheckInterval"_s, u"3600"_s);
        m.clock->advance(59min);
        QCOMPARE(m.clock->pending(), QList<Clock::Duration>{1min});
    }

    void aShorterIntervalTakesEffectAtOnce()
    {
        startJustChecked(604800);
        letPass(2h);
        m.defaults().setObject(u"SUScheduledCheckInterval"_s, 3600);
        waitForCheckAt(m.clock->date());
    }

    void aLongerIntervalTakesEffectAtOnce()
    {
        startJustChecked(3600);
        m.clock->advance(30min);
        m.defaults().setObject(u"SUScheduledCheckInterval"_s, 86400);
        letPass(23h);
        QCOMPARE(m.server->requests().size(), 0);
    }

    void switchingOnChecksWhenItIsDue()
    {
        m.switchAutomatic(false);
        m.start();
        m.clock->advance(2h);
        m.switchAutomatic(true);
        waitForCheckAt(m.clock->date());
    }

    void switchingOffEndsACheckUnderWay()
    {
        m.offerVersions({u"1.6"_s});
        m.answer.delivery = Delivery::Silent;
        m.start();
        m.clock->advance(1min);
        waitForRequests(1);
        m.switchAutomatic(false);
        QTRY_COMPARE_WITH_TIMEOUT(m.server->openConnections(), 0, WaitLimit);
        QCOMPARE(m.clock->pending(), QList<Clock::Duration>());
        QVERIFY(m.window->states.isEmpty());
    }

    void switchingOffLeavesWhatThePersonAskedFor()
    {
        m.answer.delivery = Delivery::Silent;
        m.start();
        m.updater->checkForUpdates(nullptr);
        waitForRequests(1);
        m.switchAutomatic(false);
        m.clock->advance(30s);
        QTRY_COMPARE_WITH_TIMEOUT(m.window->states.size(), 2, WaitLimit);
        QVERIFY(m.window->states.constLast().startsWith(u"failure "_s));
    }

    void askingTakesOverACheckUnderWay()
    {
        m.offerVersions({u"1.6"_s});
        m.answer.delivery = Delivery::Dripped;
        m.start();
        m.clock->advance(1min);
        waitForRequests(1);
        m.updater->checkForUpdates(nullptr);
        m.server->setDripInterval(0);
        QTRY_COMPARE_WITH_TIMEOUT(m.window->states, (QStringList{u"checking"_s, u"offer 1.6"_s}), WaitLimit);
        QCOMPARE(m.server->requests().size(), 1);
    }

    void aSkippedVersionStaysAway()
    {
        m.defaults().setObject(u"SUSkippedVersion"_s, u"1.6"_s);
        m.offerVersions({u"1.6"_s});
        m.start();
        m.clock->advance(1min);
        waitForCheckAt(m.clock->date());
        QVERIFY(m.window->states.isEmpty());
        m.offerVersions({u"1.6"_s, u"1.7"_s});
        letPass(24h);
        QTRY_COMPARE_WITH_TIMEOUT(m.window->states, QStringList{u"by itself 1.7"_s}, WaitLimit);
    }

    void whoIsToBeRemindedIsRemindedAtTheNextCheck()
    {
        m.offerVersions({u"1.6"_s});
        m.start();
        m.clock->advance(1min);
        QTRY_COMPARE_WITH_TIMEOUT(m.window->states.size(), 1, WaitLimit);
        m.window->close();
        letPass(24h);
        QTRY_COMPARE_WITH_TIMEOUT(m.window->states, (QStringList{u"by itself 1.6"_s, u"by itself 1.6"_s}),
                                  WaitLimit);
    }

    void anOpenWindowIsNotReplaced()
    {
        m.offerVersions({u"1.6"_s});
        m.start();
        m.clock->advance(1min);
        QTRY_COMPARE_WITH_TIMEOUT(m.window->states.size(), 1, WaitLimit);
        letPass(72h);
        QCOMPARE(m.server->requests().size(), 1);
        m.window->close();
        letPass(1h);
        waitForRequests(2);
    }

    void aCancelledCheckIsNotBegunAgainAtOnce()
    {
        m.start();
        m.clock->advance(30s);
        m.answer.delivery = Delivery::Silent;
        m.updater->checkForUpdates(nullptr);
        waitForRequests(1);
        m.window->close();
        m.clock->advance(59min);
        QCOMPARE(m.server->requests().size(), 1);
    }

    void aDateThatWasWrongIsNoReasonToWait()
    {
        m.defaults().setObject(u"SULastCheckTime"_s, m.clock->date().addYears(5));
        m.start();
        m.clock->advance(1min);
        waitForCheckAt(m.clock->date());
    }

    void wakingFromLongSleepChecksWithinTheHour()
    {
        startJustChecked(86400);
        m.clock->setDate(m.clock->date().addDays(3));
        m.clock->advance(1h);
        waitForCheckAt(m.clock->date());
    }
};

PLOVENDIX_TEST(UpdaterScheduleTest)
#include "UpdaterScheduleTest.moc"
