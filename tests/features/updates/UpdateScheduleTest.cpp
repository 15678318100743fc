#include <features/updates/UpdateSchedule.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class UpdateScheduleTest final : public QObject
{
    Q_OBJECT

private:
    const QDateTime m_now{QDate(2030, 5, 6), QTime(7, 8), Qt::UTC};

    qint64 secondsOf(const UpdateSchedule &schedule) const
    {
        const auto wait = schedule.waitFrom(m_now);
        return wait ? wait->count() / 1000 : -1;
    }

private Q_SLOTS:
    void nextCheck_data()
    {
        QTest::addColumn<bool>("automatic");
        QTest::addColumn<qint64>("interval");
        QTest::addColumn<qint64>("secondsAgo"); // no last check for 0
        QTest::addColumn<qint64>("wait");       // none for -1
        const auto row = [](const char *name, bool automatic, qint64 interval, qint64 ago, qint64 wait) {
            QTest::newRow(name) << automatic << interval << ago << wait;
        };
        row("switched off", false, 3600, 0, -1);
        row("switched off although due", false, 3600, 7200, -1);
        row("never checked", true, 86400, 0, 0);
        row("just checked", true, 86400, 1, 86399);
        row("half an interval ago", true, 86400, 43200, 43200);
        row("due this second", true, 86400, 86400, 0);
        row("long due", true, 86400, 900000, 0);
        row("no interval means a day", true, 0, 3600, 82800);
        row("a negative interval too", true, -5, 3600, 82800);
        row("never more than once an hour", true, 1, 60, 3540);
        row("a month", true, 2592000, 86400, 2505600);
        row("beyond measure means a year", true, std::numeric_limits<qint64>::max(), 86400, 365LL * 86400);
        row("a last check to come", true, 86400, -1000000, 0);
    }
    void nextCheck()
    {
        QFETCH(const bool, automatic);
        QFETCH(const qint64, interval);
        QFETCH(const qint64, secondsAgo);
        QFETCH(const qint64, wait);
        const QDateTime last = secondsAgo == 0 ? QDateTime() : m_now.addSecs(-secondsAgo);
        QCOMPARE(secondsOf({automatic, interval, last}), wait);
    }

    void timeZonesMakeNoDifference()
    {
        const QDateTime last = m_now.addSecs(-3600).toOffsetFromUtc(9 * 3600);
        QCOMPARE(secondsOf({true, 7200, last}), 3600);
    }
};

PLOVENDIX_TEST(UpdateScheduleTest)
#include "UpdateScheduleTest.moc"
