#include <features/donation/DonationPrompt.h>

#include <base/UserDefaults.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class DonationPromptTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    int m_files = 0;
    const QDateTime m_start{QDate(2026, 3, 1), QTime(12, 0), Qt::UTC};
    QDateTime m_now;
    DonationPrompt m_prompt{[this] { return m_now; }};

    static void store(const QString &key, const QVariant &value)
    {
        UserDefaults::standard().setObject(key, value);
    }
    void deliver(int times)
    {
        for (int time = 0; time < times; ++time)
            m_prompt.noteDelivery();
    }
    bool isDueAfter(qint64 seconds)
    {
        m_now = m_start.addSecs(seconds);
        return m_prompt.isDue();
    }

private Q_SLOTS:
    void init()
    {
        UserDefaults::setStandardFile(m_sandbox.path(u"settings/%1.conf"_s.arg(++m_files)));
        m_now = m_start;
    }

    void programIsUsefulFirst_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<int>("deliveries");
        QTest::addColumn<bool>("isDue");
        QTest::newRow("no delivery") << QVariant() << 0 << false;
        QTest::newRow("four") << QVariant() << 4 << false;
        QTest::newRow("five") << QVariant() << 5 << true;
        QTest::newRow("many") << QVariant() << 50 << true;
        QTest::newRow("after a negative count") << QVariant(-100) << 5 << true;
        QTest::newRow("negative count") << QVariant(-100) << 0 << false;
        QTest::newRow("after a word") << QVariant(u"many"_s) << 4 << false;
        QTest::newRow("the largest count") << QVariant(std::numeric_limits<qlonglong>::max()) << 0 << true;
    }
    void programIsUsefulFirst()
    {
        QFETCH(QVariant, stored);
        QFETCH(int, deliveries);
        QFETCH(bool, isDue);
        if (stored.isValid())
            store(u"donationDeliveries"_s, stored);
        deliver(deliveries);
        QCOMPARE(m_prompt.isDue(), isDue);
    }

    void countingEndsWhereItIsEnough()
    {
        deliver(20);
        QCOMPARE(UserDefaults::standard().integer(u"donationDeliveries"_s), 5);
    }

    void declinedPromptNeverComesAgain()
    {
        deliver(5);
        store(u"dontAskMeToDonate"_s, true);
        QVERIFY(!m_prompt.isDue());
        store(u"askMeToDonateLater"_s, true); // both answers
        m_now = m_start.addYears(10);
        QVERIFY(!m_prompt.isDue());
    }

    void timePassesBeforeTheNextPrompt_data()
    {
        QTest::addColumn<bool>("saidLater");
        QTest::addColumn<qint64>("seconds");
        QTest::addColumn<bool>("isDue");
        constexpr qint64 Day = 86400;
        QTest::newRow("later, at once") << true << qint64{0} << false;
        QTest::newRow("later, a second before the month") << true << 30 * Day - 1 << false;
        QTest::newRow("later, a month") << true << 30 * Day << true;
        QTest::newRow("later, the clock was set back") << true << -400 * Day << false;
        QTest::newRow("no answer, at once") << false << qint64{0} << false;
        QTest::newRow("no answer, a second before the day") << false << Day - 1 << false;
        QTest::newRow("no answer, a day") << false << Day << true;
    }
    void timePassesBeforeTheNextPrompt()
    {
        QFETCH(bool, saidLater);
        QFETCH(qint64, seconds);
        QFETCH(bool, isDue);
        deliver(5);
        QVERIFY(m_prompt.isDue());
        if (saidLater)
            store(u"askMeToDonateLater"_s, true);
        QCOMPARE(isDueAfter(seconds), isDue);
    }

    void laterOfUnknownDateCountsFromNow()
    {
        constexpr qint64 Day = 86400;
        deliver(5);
        store(u"askMeToDonateLater"_s, true);
        QVERIFY(!isDueAfter(0));
        QVERIFY(!isDueAfter(29 * Day));
        QVERIFY(isDueAfter(30 * Day));
    }
};

PLOVENDIX_TEST(DonationPromptTest)
#include "DonationPromptTest.moc"
