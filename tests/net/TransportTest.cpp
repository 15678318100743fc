#include <net/Transport.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/standin/Deformation.h>
#include <tests/support/standin/LoopbackServer.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TransportTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_clock = std::make_unique<ManualClock>();
        m_times.clear();
        m_paths.clear();
        m_answers.clear();
        m_server = std::make_unique<LoopbackServer>([this](const ReceivedRequest &request) {
            m_paths += request.path();
            m_times += m_clock->now();
            return m_answers.size() > 1 ? m_answers.takeFirst() : m_answers.value(0, jsonAnswer(200, "{}"));
        });
        m_transport = std::make_unique<Transport>(*m_clock, ServiceName::Subtitles, RateLimiter(4, 1000ms));
        m_transport->setJitter([] { return 0.0; });
    }

    void cleanup()
    {
        m_calls.clear();
        m_transport.reset();
        m_server.reset();
    }

    void passingFailuresAreAskedAgain_data()
    {
        QTest::addColumn<QList<ServedAnswer>>("answers");
        QTest::addColumn<QList<int>>("waits");
        const ServedAnswer good = jsonAnswer(200, "{}");
        const auto refused = [](const QByteArray &header, const QByteArray &value) {
            return ServedAnswer{429, {{header, value}}, {}};
        };
        QTest::newRow("503 twice") << QList{jsonAnswer(503, {}), jsonAnswer(503, {}), good}
                                   << QList{1000, 2000};
        QTest::newRow("500 once") << QList{jsonAnswer(500, {}), good} << QList{1000};
        QTest::newRow("500 twice") << QList{jsonAnswer(500, {})} << QList{1000};
        QTest::newRow("502 for ever") << QList{jsonAnswer(502, {})} << QList{1000, 2000};
        QTest::newRow("429 with seconds") << QList{refused("Retry-After", "3"), good} << QList{3000};
        QTest::newRow("429 with a reset") << QList{refused("RateLimit-Reset", "2"), good} << QList{2000};
        QTest::newRow("429 without a word") << QList{jsonAnswer(429, {}), good} << QList{1000};
        QTest::newRow("429 with a date")
            << QList{refused("Retry-After", "Mon, 04 Mar 2030 20:48:05 GMT"), good} << QList{5000};
        QTest::newRow("429 with both, the reset later")
            << QList{ServedAnswer{429, {{"Retry-After", "1"}, {"RateLimit-Reset", "4"}}, {}}, good}
            << QList{4000};
        QTest::newRow("429 with both, the reset first")
            << QList{ServedAnswer{429, {{"Retry-After", "3"}, {"RateLimit-Reset", "1"}}, {}}, good}
            << QList{3000};
        QTest::newRow("503 with a reset that means something else")
            << QList{ServedAnswer{503, {{"RateLimit-Reset", "4"}}, {}}, good} << QList{1000};
        QTest::newRow("511 of the network") << QList{jsonAnswer(511, {}), good} << QList<int>();
        QTest::newRow("429 with nonsense") << QList{refused("Retry-After", "soon"), good} << QList{1000};
        for (const int status : {400, 401, 403, 404, 406, 410})
            QTest::addRow("%d", status) << QList{jsonAnswer(status, {}), good} << QList<int>();
    }
    void passingFailuresAreAskedAgain()
    {
        QFETCH(const QList<ServedAnswer>, answers);
        QFETCH(const QList<int>, waits);
        m_answers = answers;
        const auto caught = send(HttpRequest::Method::Get);
        QTRY_VERIFY_WITH_TIMEOUT(caught->came(), WaitLimit);
        QList<int> waited;
        for (qsizetype i = 1; i < m_times.size(); ++i)
            waited += static_cast<int>((m_times[i] - m_times[i - 1]).count());
        QCOMPARE(waited, waits);
        QCOMPARE((**caught)->status, m_times.size() > answers.size() ? answers.last().status
                                                                     : answers[m_times.size() - 1].status);
    }

    void jitterStaysWithinAFifth()
    {
        m_answers = {jsonAnswer(503, {})};
        m_transport->setJitter([turn = 1.0]() mutable { return turn = -turn; });
        const auto caught = send(HttpRequest::Method::Get);
        QTRY_VERIFY_WITH_TIMEOUT(caught->came(), WaitLimit);
        QCOMPARE(m_times[1] - m_times[0], 800ms);
        QCOMPARE(m_times[2] - m_times[1], 2400ms);
    }

    void refusalForSpeedIsWaitedForASecondAtLeast()
    {
        m_answers = {jsonAnswer(429, {}), jsonAnswer(200, "{}")};
        m_transport->setJitter([] { return -1.0; });
        const auto caught = send(HttpRequest::Method::Get);
        QTRY_VERIFY_WITH_TIMEOUT(caught->came(), WaitLimit);
        QCOMPARE(m_times[1] - m_times[0], 1000ms);
    }

    void redirectsTakeTheirPlaceInTheRate()
    {
        for (int i = 0; i < 6; ++i)
            m_answers += ServedAnswer{301, {{"Location", "/canonical"}}, {}};
        m_answers += jsonAnswer(200, "{}");
        QList<std::shared_ptr<Caught<HttpAnswer>>> caught;
        for (int i = 0; i < 6; ++i)
            caught += send(HttpRequest::Method::Get);
        for (const auto &one : caught)
            QTRY_VERIFY_WITH_TIMEOUT(one->came(), WaitLimit);
        QCOMPARE(m_times.size(), 12);
        for (qsizetype i = 4; i < m_times.size(); ++i)
            QVERIFY(m_times[i] - m_times[i - 4] >= 1000ms);
    }

    void brokenConnectionsAreTriedThrice()
    {
        m_server->stop();
        const auto caught = send(HttpRequest::Method::Get);
        const Clock::Duration start = m_clock->now();
        QTRY_VERIFY_WITH_TIMEOUT(caught->came(), WaitLimit);
        QCOMPARE(kindOf((*caught)->error()), ServiceFailure::Unavailable);
        QCOMPARE(m_clock->now() - start, 3000ms);
    }

    void ordersAreNeverRepeated()
    {
        m_answers = {jsonAnswer(503, {})};
        const auto caught = send(HttpRequest::Method::Post);
        QTRY_VERIFY_WITH_TIMEOUT(caught->came(), WaitLimit);
        QCOMPARE(m_times.size(), 1);
    }

    void fourRequestsASecond()
    {
        QList<std::shared_ptr<Caught<HttpAnswer>>> caught;
        for (int i = 0; i < 12; ++i)
            caught += send(HttpRequest::Method::Get);
        QTRY_VERIFY_WITH_TIMEOUT(caught.last()->came(), WaitLimit);
        QTRY_COMPARE_WITH_TIMEOUT(m_times.size(), 12, WaitLimit);
        for (qsizetype i = 4; i < m_times.size(); ++i)
            QVERIFY(m_times[i] - m_times[i - 4] >= 1000ms);
    }

    void cancelStopsTheRetries()
    {
        m_answers = {jsonAnswer(503, {})};
        m_clock->setLongestAutomaticWait(0ms);
        const auto caught = send(HttpRequest::Method::Get);
        QTRY_COMPARE_WITH_TIMEOUT(m_clock->pending(), QList<Clock::Duration>{1000ms}, WaitLimit);
        m_calls.clear();
        QCOMPARE(m_clock->pending(), QList<Clock::Duration>());
        QVERIFY(!caught->came());
    }

    void aRefusalForSpeedHoldsUpTheOthers()
    {
        m_answers = {ServedAnswer{429, {{"Retry-After", "4"}}, {}}, jsonAnswer(200, "{}")};
        m_clock->setLongestAutomaticWait(0ms);
        const auto first = send(HttpRequest::Method::Get);
        QTRY_COMPARE_WITH_TIMEOUT(m_clock->pending(), QList<Clock::Duration>{4000ms}, WaitLimit);
        const auto second = send(HttpRequest::Method::Get);
        QCOMPARE(m_clock->pending(), (QList<Clock::Duration>{4000ms, 4000ms}));
    }

    void rateRefusalDelaysTheNextRequestWithoutARetry_data()
    {
        QTest::addColumn<QByteArray>("retryAfter");
        QTest::addColumn<int>("seconds");
        QTest::newRow("a moment") << QByteArray("7") << 7;
        QTest::newRow("without a word") << QByteArray("soon") << 1;
        QTest::newRow("longer than anybody waits") << QByteArray("3600") << 0;
    }
    void rateRefusalDelaysTheNextRequestWithoutARetry()
    {
        QFETCH(const QByteArray, retryAfter);
        QFETCH(const int, seconds);
        m_answers = {ServedAnswer{429, {{"Retry-After", retryAfter}}, {}}, jsonAnswer(200, "{}")};
        const auto order = send(HttpRequest::Method::Post);
        QTRY_VERIFY_WITH_TIMEOUT(order->came(), WaitLimit);
        m_clock->setLongestAutomaticWait(-1ms);
        send(HttpRequest::Method::Get);
        QCOMPARE(m_clock->pending(), QList<Clock::Duration>{std::chrono::seconds(seconds)});
    }

    void refusalForSpeedHoldsUpThoseWhoWait()
    {
        m_answers = {ServedAnswer{429, {{"Retry-After", "4"}}, {}}, jsonAnswer(200, "{}")};
        m_clock->setLongestAutomaticWait(0ms);
        for (int i = 0; i < 6; ++i)
            send(HttpRequest::Method::Get);
        m_clock->advance(0ms);
        QTRY_COMPARE_WITH_TIMEOUT(m_paths.size(), 4, WaitLimit);
        // All four are answered: only the one that was refused and those without a place wait.
        QTRY_COMPARE_WITH_TIMEOUT(m_clock->pending().constLast(), Clock::Duration(4s), WaitLimit);
        m_clock->advance(1000ms);
        QCOMPARE(m_clock->pending(), (QList<Clock::Duration>{3000ms, 3000ms}));
        m_clock->advance(3000ms);
        QTRY_COMPARE_WITH_TIMEOUT(m_paths.size(), 7, WaitLimit);
    }

    void whoGivesUpTakesNoPlaceInTheRate()
    {
        QList<std::shared_ptr<Caught<HttpAnswer>>> first;
        for (int i = 0; i < 4; ++i)
            first += send(HttpRequest::Method::Get);
        for (const auto &one : first)
            QTRY_VERIFY_WITH_TIMEOUT(one->came(), WaitLimit);
        m_clock->setLongestAutomaticWait(0ms);
        for (int i = 0; i < 20; ++i)
            send(HttpRequest::Method::Get, u"/given-up"_s);
        m_calls.clear();
        QCOMPARE(m_clock->pending(), QList<Clock::Duration>());
        const auto last = send(HttpRequest::Method::Get);
        QCOMPARE(m_clock->pending(), QList<Clock::Duration>{1000ms});
        m_clock->advance(1000ms);
        QTRY_VERIFY_WITH_TIMEOUT(comes(*last), WaitLimit);
        QVERIFY(!m_paths.contains("/given-up"));
    }

    void limitsRunOnlyForWhatHasLeft()
    {
        occupyTheHost();
        const auto seventh = send(HttpRequest::Method::Get, u"/seventh"_s);
        // Silence and the whole, for each of the six; nothing for the one that waits.
        const Clock::Duration silence = 20s;
        QTRY_COMPARE_WITH_TIMEOUT(m_clock->pending().value(0), silence, WaitLimit);
        QCOMPARE(m_clock->pending().size(), 12);
        m_clock->advance(15s);
        QVERIFY(!m_paths.contains("/seventh"));
        m_answers = {jsonAnswer(200, "{}")};
        m_calls[0].reset();
        QTRY_VERIFY_WITH_TIMEOUT(comes(*seventh), WaitLimit);
        QVERIFY2(**seventh, **seventh ? "" : qPrintable((*seventh)->error().detail));
        QCOMPARE(m_paths.size(), 7);
    }

    void whoGivesUpWaitingIsNotAsked()
    {
        occupyTheHost();
        const auto seventh = send(HttpRequest::Method::Get, u"/seventh"_s);
        const auto eighth = send(HttpRequest::Method::Get, u"/eighth"_s);
        const auto ninth = send(HttpRequest::Method::Get, u"/ninth"_s);
        m_calls[6].reset();
        m_answers = {jsonAnswer(200, "{}")};
        m_calls[0].reset();
        QTRY_VERIFY_WITH_TIMEOUT(comes(*ninth), WaitLimit);
        QVERIFY(eighth->came());
        QVERIFY(!seventh->came());
        QCOMPARE(m_paths.mid(6), (QList<QByteArray>{"/eighth", "/ninth"}));
    }

    void retriesGiveTheirPlaceToOthers()
    {
        occupyTheHost(5);
        m_answers = {jsonAnswer(503, {}), jsonAnswer(200, "{}")};
        m_clock->setLongestAutomaticWait(0ms);
        const auto sixth = send(HttpRequest::Method::Get, u"/sixth"_s);
        const auto seventh = send(HttpRequest::Method::Get, u"/seventh"_s);
        QTRY_VERIFY_WITH_TIMEOUT(comes(*seventh), WaitLimit);
        QVERIFY(**seventh);
        QVERIFY(!sixth->came()); // it waits for its second try
        QCOMPARE(m_paths.mid(5), (QList<QByteArray>{"/sixth", "/seventh"}));
    }

    void fullHostDoesNotBlockAnother()
    {
        occupyTheHost();
        LoopbackServer other([](const ReceivedRequest &) { return jsonAnswer(200, "{}"); });
        const auto caught = send(HttpRequest::Method::Get, u"/"_s, &other);
        QTRY_VERIFY_WITH_TIMEOUT(comes(*caught), WaitLimit);
        QVERIFY(**caught);
    }

private:
    /// So many requests that nobody answers.
    void occupyTheHost(int count = Transport::ConnectionsAtAHost)
    {
        m_calls.clear();
        m_transport = std::make_unique<Transport>(*m_clock, ServiceName::Subtitles, RateLimiter(1000, 1ms));
        m_transport->setJitter([] { return 0.0; });
        m_answers = {ServedAnswer{200, {}, {}, Delivery::Silent}};
        for (int i = 0; i < count; ++i)
            send(HttpRequest::Method::Get);
        m_clock->advance(0ms);
        QTRY_COMPARE_WITH_TIMEOUT(m_paths.size(), count, WaitLimit);
    }
    /// Time stands still while something is on the wire; what is due happens.
    bool comes(const Caught<HttpAnswer> &caught)
    {
        m_clock->advance(0ms);
        return caught.came();
    }
    std::shared_ptr<Caught<HttpAnswer>> send(HttpRequest::Method method, const QString &path = u"/"_s,
                                             LoopbackServer *server = nullptr)
    {
        HttpRequest request;
        request.method = method;
        request.url = (server ? server : m_server.get())->url(path);
        if (method == HttpRequest::Method::Post)
            request.setHeader("Content-Type", "application/json");
        auto caught = std::make_shared<Caught<HttpAnswer>>();
        m_calls +=
            m_transport->send(request, HostRules({}, HostRules::Loopback::Accepted),
                              [caught](const Result<HttpAnswer> &outcome) { caught->completion()(outcome); });
        return caught;
    }

    Sandbox m_sandbox;
    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<LoopbackServer> m_server;
    std::unique_ptr<Transport> m_transport;
    QList<ServedAnswer> m_answers;
    QList<Clock::Duration> m_times;
    QList<QByteArray> m_paths;
    QList<Transport::Call> m_calls;
};

PLOVENDIX_TEST(TransportTest)
#include "TransportTest.moc"
