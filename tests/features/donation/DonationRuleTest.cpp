#include <base/UserDefaults.h>
#include <features/donation/DonationRule.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class DonationRuleTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    int m_files = 0;
    const QDateTime m_now{QDate(2026, 3, 1), QTime(12, 0), Qt::UTC};

    static UserDefaults &defaults() { return UserDefaults::standard(); }
    static void deliver(int times)
    {
        for (int time = 0; time < times; ++time)
            DonationRule(defaults()).noteDelivery();
    }

private Q_SLOTS:
    void init() { UserDefaults::setStandardFile(m_sandbox.path(u"settings/%1.conf"_s.arg(++m_files))); }

    void noDonationIsAskedForTooEarly_data()
    {
        QTest::addColumn<int>("deliveries");
        QTest::addColumn<bool>("mayAsk");
        QTest::newRow("none") << 0 << false;
        QTest::newRow("four") << 4 << false;
        QTest::newRow("five") << 5 << true;
        QTest::newRow("many") << 50 << true;
    }
    void noDonationIsAskedForTooEarly()
    {
        QFETCH(int, deliveries);
        QFETCH(bool, mayAsk);
        deliver(deliveries);
        QCOMPARE(DonationRule(defaults()).mayAsk(m_now), mayAsk);
    }

    void whoDeclinedIsNeverAskedAgain()
    {
        deliver(5);
        defaults().setObject(u"dontAskMeToDonate"_s, true);
        QVERIFY(!DonationRule(defaults()).mayAsk(m_now));
        QVERIFY(!DonationRule(defaults()).mayAsk(m_now.addYears(10)));
        // Also where both answers are stored.
        defaults().setObject(u"askMeToDonateLater"_s, true);
        QVERIFY(!DonationRule(defaults()).mayAsk(m_now.addYears(10)));
    }

    void timePassesBeforeTheNextQuestion_data()
    {
        QTest::addColumn<bool>("saidLater");
        QTest::addColumn<qint64>("seconds");
        QTest::addColumn<bool>("mayAsk");
        constexpr qint64 Day = 86400;
        QTest::newRow("later, at once") << true << qint64{0} << false;
        QTest::newRow("later, a second before the month") << true << 30 * Day - 1 << false;
        QTest::newRow("later, a month") << true << 30 * Day << true;
        QTest::newRow("later, the clock was set back") << true << -400 * Day << false;
        QTest::newRow("no answer, at once") << false << qint64{0} << false;
        QTest::newRow("no answer, a second before the day") << false << Day - 1 << false;
        QTest::newRow("no answer, a day") << false << Day << true;
    }
    void timePassesBeforeTheNextQuestion()
    {
        QFETCH(bool, saidLater);
        QFETCH(qint64, seconds);
        QFETCH(bool, mayAsk);
        deliver(5);
        DonationRule(defaults()).noteAsked(m_now);
        if (saidLater)
            defaults().setObject(u"askMeToDonateLater"_s, true);
        defaults().synchronize();
        UserDefaults restarted(defaults().path());
        QCOMPARE(DonationRule(restarted).mayAsk(m_now.addSecs(seconds)), mayAsk);
    }

    void aLaterOfUnknownDateCountsFromNow()
    {
        deliver(5);
        defaults().setObject(u"askMeToDonateLater"_s, true);
        DonationRule rule(defaults());
        QVERIFY(!rule.mayAsk(m_now));
        rule.dateLater(m_now);
        QVERIFY(!rule.mayAsk(m_now.addDays(29)));
        rule.dateLater(m_now.addDays(29)); // known by now
        QVERIFY(rule.mayAsk(m_now.addDays(30)));
    }

    void withoutALaterNoDateIsNoted()
    {
        deliver(5);
        DonationRule rule(defaults());
        rule.dateLater(m_now);
        QVERIFY(rule.mayAsk(m_now));
    }

    void invalidSettingsDoNotAskEarly_data()
    {
        QTest::addColumn<QVariant>("deliveries");
        QTest::addColumn<bool>("afterFive");
        QTest::newRow("negative") << QVariant(-100) << true;
        QTest::newRow("no number") << QVariant(u"many"_s) << true;
        QTest::newRow("the largest") << QVariant(std::numeric_limits<qlonglong>::max()) << true;
    }
    void invalidSettingsDoNotAskEarly()
    {
        QFETCH(QVariant, deliveries);
        QFETCH(bool, afterFive);
        defaults().setObject(u"donationDeliveries"_s, deliveries);
        const bool enough = deliveries.toLongLong() >= 5;
        QCOMPARE(DonationRule(defaults()).mayAsk(m_now), enough);
        deliver(5);
        QCOMPARE(DonationRule(defaults()).mayAsk(m_now), afterFive);
    }

    void countingEndsWhereItIsEnough()
    {
        deliver(20);
        QCOMPARE(defaults().integer(u"donationDeliveries"_s), 5);
    }
};

PLOVENDIX_TEST(DonationRuleTest)
#include "DonationRuleTest.moc"
