#include <net/RetryPolicy.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Headers = QList<std::pair<QByteArray, QByteArray>>;

Q_DECLARE_METATYPE(HttpResult)

class RetryPolicyTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// The waits before the second, third and fourth try, and the pause for all requests, in milliseconds.
    void waitsAndPauses_data()
    {
        QTest::addColumn<HttpResult>("outcome");
        QTest::addColumn<QList<int>>("waits");
        QTest::addColumn<int>("pause");
        const auto row = [](int status, const Headers &headers, const QList<int> &waits, int pause) {
            HttpAnswer answer{status, {}, {}};
            QByteArray name = QByteArray::number(status);
            for (const auto &[header, value] : headers) {
                answer.headers.insert(header, value);
                name += ", " + header + ": " + value;
            }
            QTest::newRow(name.constData()) << HttpResult(answer) << waits << pause;
        };
        for (const int status : {200, 301, 304, 400, 401, 403, 404, 406, 410, 511})
            row(status, {}, {}, 0);
        row(500, {}, {1000}, 0);
        row(502, {}, {1000, 2000}, 0);
        row(503, {}, {1000, 2000}, 0);
        row(503, {{"retry-after", "5"}}, {5000, 5000}, 0);
        row(503, {{"retry-after", "16"}}, {}, 16'000);
        row(503, {{"ratelimit-reset", "4"}}, {1000, 2000}, 0); // it concerns the rate alone
        row(504, {{"retry-after", "3600"}}, {}, 0);
        row(429, {}, {1000, 2000}, 1000);
        row(429, {{"retry-after", "0"}}, {1000, 1000}, 1000);
        row(429, {{"retry-after", " 3 "}}, {3000, 3000}, 3000);
        row(429, {{"retry-after", "15"}}, {15'000, 15'000}, 15'000);
        row(429, {{"retry-after", "16"}}, {}, 16'000);
        row(429, {{"retry-after", "999999999"}}, {}, 24 * 3600 * 1000);
        row(429, {{"retry-after", "-3"}}, {1000, 2000}, 1000);
        row(429, {{"retry-after", "soon"}}, {1000, 2000}, 1000);
        row(429, {{"retry-after", "Mon, 04 Mar 2030 20:48:05 GMT"}}, {5000, 5000}, 5000);
        row(429, {{"retry-after", "Mon, 04 Mar 2030 20:47:00 GMT"}}, {1000, 1000}, 1000);
        row(429, {{"ratelimit-reset", "2"}}, {2000, 2000}, 2000);
        row(429, {{"retry-after", "1"}, {"ratelimit-reset", "4"}}, {4000, 4000}, 4000);
        row(429, {{"retry-after", "3"}, {"ratelimit-reset", "1"}}, {3000, 3000}, 3000);
        for (const auto kind :
             {ServiceFailure::Offline, ServiceFailure::Timeout, ServiceFailure::Unavailable})
            QTest::addRow("fault %d", static_cast<int>(kind))
                << HttpResult(TransportFault{kind, {}}) << QList<int>{1000, 2000} << 0;
        for (const auto kind : {ServiceFailure::BadAnswer, ServiceFailure::Insecure, ServiceFailure::Proxy,
                                ServiceFailure::ForbiddenAddress})
            QTest::addRow("fault %d", static_cast<int>(kind))
                << HttpResult(TransportFault{kind, {}}) << QList<int>() << 0;
    }
    void waitsAndPauses()
    {
        QFETCH(const HttpResult, outcome);
        QList<int> waits;
        while (const auto wait = waitBefore(outcome, static_cast<int>(waits.size()) + 1))
            waits += static_cast<int>(wait->count());
        QTEST(waits, "waits");
        const auto pause = RetryPolicy::pauseAfter(outcome, m_date);
        QTEST(static_cast<int>(pause.value_or(0ms).count()), "pause");
    }

    void onlyGetIsRepeated()
    {
        for (const auto method : {HttpRequest::Method::Post, HttpRequest::Method::Delete})
            QVERIFY(!waitBefore(HttpAnswer{503, {}, {}}, 1, 0, method));
    }

    void jitterStaysWithinAFifth()
    {
        QCOMPARE(waitBefore(HttpAnswer{503, {}, {}}, 1, -1.0), 800ms);
        QCOMPARE(waitBefore(HttpAnswer{503, {}, {}}, 2, 1.0), 2400ms);
        // A server that refuses for speed is not asked again before a second has passed.
        QCOMPARE(waitBefore(HttpAnswer{429, {}, {}}, 1, -1.0), 1000ms);
    }

private:
    std::optional<RetryPolicy::Duration>
    waitBefore(const HttpResult &outcome, int tries, double jitter = 0,
               HttpRequest::Method method = HttpRequest::Method::Get) const
    {
        HttpRequest request;
        request.method = method;
        return RetryPolicy::waitBeforeNextTry(request, outcome, tries, jitter, m_date);
    }

    const QDateTime m_date{QDate(2030, 3, 4), QTime(20, 48), Qt::UTC};
};

PLOVENDIX_PLAIN_TEST(RetryPolicyTest)
#include "RetryPolicyTest.moc"
