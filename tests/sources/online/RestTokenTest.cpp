#include <sources/online/RestSession.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace std::chrono_literals;

namespace
{
class StillClock final : public Clock
{
public:
    Duration now() const override { return time; }
    QDateTime date() const override { return day; }
    Timer after(Duration, std::function<void()>) override { return {}; }

    Duration time{1000};
    QDateTime day{QDate(2030, 1, 1), QTime(12, 0), Qt::UTC};
};

QByteArray token(const QByteArray &claims)
{
    return "head." + claims.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals) + ".sum";
}
} // namespace

class RestTokenTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lifeIsWhatTheTokenSays_data()
    {
        QTest::addColumn<QByteArray>("claims");
        QTest::addColumn<qint64>("minutes");
        const qint64 now = StillClock().day.toSecsSinceEpoch();
        const auto expiring = [now](qint64 seconds) {
            return "{\"exp\":" + QByteArray::number(now + seconds) + "}";
        };
        QTest::newRow("23 hours, less ten minutes") << expiring(23 * 3600) << qint64(23 * 60 - 10);
        QTest::newRow("five minutes are one") << expiring(300) << qint64(1);
        QTest::newRow("no claim") << QByteArray("{}") << qint64(12 * 60);
        QTest::newRow("no JSON") << QByteArray("\xFF\x01") << qint64(12 * 60);
        QTest::newRow("over already: our date is wrong") << expiring(-5000) << qint64(12 * 60);
        QTest::newRow("in ten years: our date is wrong") << expiring(10LL * 365 * 86400) << qint64(12 * 60);
        QTest::newRow("absurd") << QByteArray("{\"exp\":1e18}") << qint64(12 * 60);
        QTest::newRow("as text") << "{\"exp\":\"" + QByteArray::number(now + 7200) + "\"}" << qint64(110);
    }
    void lifeIsWhatTheTokenSays()
    {
        QFETCH(const QByteArray, claims);
        QFETCH(const qint64, minutes);
        StillClock clock;
        const RestToken made(token(claims), clock);
        QVERIFY(made.isValid(clock));
        clock.time += std::chrono::minutes(minutes) - 1ms;
        QVERIFY(made.isValid(clock));
        clock.time += 1ms;
        QVERIFY(!made.isValid(clock));
    }

    void sleepEndsItByTheDate()
    {
        StillClock clock;
        const RestToken made(token("{}"), clock);
        clock.day = clock.day.addSecs(13 * 3600);
        QVERIFY(!made.isValid(clock));
    }

    void dateSetBackDoesNot()
    {
        StillClock clock;
        const RestToken made(token("{}"), clock);
        clock.day = clock.day.addYears(-3);
        QVERIFY(made.isValid(clock));
    }

    void noTokenIsNeverValid() { QVERIFY(!RestToken().isValid(StillClock())); }

    void anyTextIsAToken()
    {
        StillClock clock;
        for (const char *text : {"x", ".", "..", "a.b", "a.%%%.c"})
            QVERIFY(RestToken(text, clock).isValid(clock));
    }
};

PLOVENDIX_PLAIN_TEST(RestTokenTest)
#include "RestTokenTest.moc"
