#include "HttpFixture.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Method = HttpRequest::Method;

class RequestQueueTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m = std::make_unique<HttpFixture>();
        m_times.clear();
        m_paths.clear();
        m_answers.clear();
        m->served = [this](const ReceivedRequest &request) {
            m_paths += request.path();
            m_times += m->clock.now();
            return m_answers.size() > 1 ? m_answers.takeFirst() : m_answers.value(0, jsonAnswer(200, "{}"));
        };
        makeQueue({4, 1000ms});
    }
    void cleanup()
    {
        m_sent.clear();
        m_queue.reset();
        m.reset();
    }

    void requestThatNeedNotWaitLeavesAtOnce()
    {
        bool hasLeft = false;
        HttpRequest request = m->request();
        request.onLeaving = [&] { hasLeft = true; };
        const auto sent = HttpFixture::send(*m_queue, request);
        QVERIFY(hasLeft);
        QVERIFY(!sent->outcome.came());
        QCOMPARE(sent->answer().status, 200);
    }

    void retriesEndWithTheLastAnswer()
    {
        m_answers = {jsonAnswer(503, {})};
        m_queue->setJitter([turn = 1.0]() mutable { return turn = -turn; });
        QCOMPARE(send()->answer().status, 503);
        QCOMPARE(m_times.size(), 3);
        QCOMPARE(m_times[1] - m_times[0], 800ms);
        QCOMPARE(m_times[2] - m_times[1], 2400ms);
    }

    void brokenConnectionsAreTriedThrice()
    {
        m->server.stop();
        const Clock::Duration start = m->clock.now();
        QCOMPARE(send()->kind(), ServiceFailure::Unavailable);
        QCOMPARE(m->clock.now() - start, 3000ms);
    }

    void rateIsKept_data()
    {
        QTest::addColumn<int>("redirected");
        QTest::newRow("requests") << 0;
        QTest::newRow("redirects") << 6;
    }
    void rateIsKept()
    {
        QFETCH(const int, redirected);
        for (int i = 0; i < redirected; ++i)
            m_answers += ServedAnswer{301, {{"Location", "/canonical"}}, {}};
        m_answers += jsonAnswer(200, "{}");
        for (int i = 0; i < 12 - redirected; ++i)
            send();
        for (const auto &sent : std::as_const(m_sent))
            QCOMPARE(sent->answer().status, 200);
        QCOMPARE(m_times.size(), 12);
        for (qsizetype i = 4; i < m_times.size(); ++i)
            QVERIFY(m_times[i] - m_times[i - 4] >= 1000ms);
    }

    void cancelStopsTheRetries()
    {
        m_answers = {jsonAnswer(503, {})};
        m->clock.setLongestAutomaticWait(0ms);
        const auto sent = send();
        QTRY_COMPARE_WITH_TIMEOUT(m->clock.pending(), QList<Clock::Duration>{1000ms}, WaitLimit);
        sent->call.reset();
        QCOMPARE(m->clock.pending(), QList<Clock::Duration>());
        QVERIFY(!sent->outcome.came());
    }

    void rateRefusalDelaysOthers()
    {
        m_answers = {ServedAnswer{429, {{"Retry-After", "4"}}, {}}, jsonAnswer(200, "{}")};
        m->clock.setLongestAutomaticWait(0ms);
        for (int i = 0; i < 6; ++i)
            send();
        QTRY_COMPARE_WITH_TIMEOUT(m_paths.size(), 4, WaitLimit);
        // All four are answered: the refused one waits, and so do those without a slot.
        QTRY_COMPARE_WITH_TIMEOUT(m->clock.pending(), (QList<Clock::Duration>{4s, 4s}), WaitLimit);
        m->clock.advance(1000ms);
        QCOMPARE(m->clock.pending(), (QList<Clock::Duration>{3s, 3s}));
        m->clock.advance(3000ms);
        QTRY_COMPARE_WITH_TIMEOUT(m_paths.size(), 7, WaitLimit);
    }

    void rateRefusalDelaysTheNextRequestWithoutARetry_data()
    {
        QTest::addColumn<QByteArray>("retryAfter");
        QTest::addColumn<Clock::Duration>("wait");
        QTest::newRow("a moment") << QByteArray("7") << Clock::Duration(7s);
        QTest::newRow("too long to wait for") << QByteArray("3600") << Clock::Duration(0s); // fails
    }
    void rateRefusalDelaysTheNextRequestWithoutARetry()
    {
        QFETCH(const QByteArray, retryAfter);
        QFETCH(const Clock::Duration, wait);
        m_answers = {ServedAnswer{429, {{"Retry-After", retryAfter}}, {}}, jsonAnswer(200, "{}")};
        *send(Method::Post)->outcome;
        m->clock.setLongestAutomaticWait(-1ms);
        send();
        QCOMPARE(m->clock.pending(), QList<Clock::Duration>{wait});
    }

    void cancelledRequestsUseNoSlot()
    {
        for (int i = 0; i < 4; ++i)
            send();
        for (const auto &sent : std::as_const(m_sent))
            QCOMPARE(sent->answer().status, 200);
        m->clock.setLongestAutomaticWait(0ms);
        for (int i = 0; i < 20; ++i)
            send(Method::Get, u"/cancelled"_s);
        m_sent.clear();
        QCOMPARE(m->clock.pending(), QList<Clock::Duration>());
        const auto last = send();
        QCOMPARE(m->clock.pending(), QList<Clock::Duration>{1000ms});
        m->clock.advance(1000ms);
        QCOMPARE(last->answer().status, 200);
        QVERIFY(!m_paths.contains("/cancelled"));
    }

    void timeLimitsRunOnlyForSentRequests()
    {
        occupyTheHost();
        const auto seventh = send(Method::Get, u"/seventh"_s);
        // Silence and the whole, for each of the six; nothing for the one that waits.
        QTRY_COMPARE_WITH_TIMEOUT(m->clock.pending().value(0), Clock::Duration(20s), WaitLimit);
        QCOMPARE(m->clock.pending().size(), 12);
        m->clock.advance(15s);
        QVERIFY(!m_paths.contains("/seventh"));
        m_answers = {jsonAnswer(200, "{}")};
        m_sent[0]->call.reset();
        QTRY_VERIFY_WITH_TIMEOUT(comes(*seventh), WaitLimit);
        QCOMPARE(seventh->answer().status, 200);
        QCOMPARE(m_paths.size(), 7);
    }

    void waitingRequestsAreSentInOrder()
    {
        occupyTheHost();
        const auto seventh = send(Method::Get, u"/seventh"_s);
        const auto eighth = send(Method::Get, u"/eighth"_s);
        const auto ninth = send(Method::Get, u"/ninth"_s);
        seventh->call.reset();
        m_answers = {jsonAnswer(200, "{}")};
        m_sent[0]->call.reset();
        QTRY_VERIFY_WITH_TIMEOUT(comes(*ninth), WaitLimit);
        QVERIFY(eighth->outcome.came());
        QVERIFY(!seventh->outcome.came());
        QCOMPARE(m_paths.mid(6), (QList<QByteArray>{"/eighth", "/ninth"}));
    }

    void retriesGiveTheirPlaceToOthers()
    {
        occupyTheHost(5);
        m_answers = {jsonAnswer(503, {}), jsonAnswer(200, "{}")};
        m->clock.setLongestAutomaticWait(0ms);
        const auto sixth = send(Method::Get, u"/sixth"_s);
        const auto seventh = send(Method::Get, u"/seventh"_s);
        QTRY_VERIFY_WITH_TIMEOUT(comes(*seventh), WaitLimit);
        QCOMPARE(seventh->answer().status, 200);
        QVERIFY(!sixth->outcome.came()); // it waits for its second try
        QCOMPARE(m_paths.mid(5), (QList<QByteArray>{"/sixth", "/seventh"}));
    }

    void redirectedRequestKeepsItsPlace()
    {
        makeQueue({1, 1000ms});
        m->clock.setLongestAutomaticWait(-1ms);
        m_answers = {ServedAnswer{301, {{"Location", "/canonical"}}, {}}, jsonAnswer(200, "{}")};
        const auto first = send();
        const auto second = send(Method::Get, u"/second"_s);
        // The redirect goes first, although it came later.
        QTRY_COMPARE_WITH_TIMEOUT(m->clock.pending(), QList<Clock::Duration>{1s}, WaitLimit);
        m->clock.advance(1s);
        QCOMPARE(first->answer().status, 200);
        m->clock.advance(1s);
        QCOMPARE(second->answer().status, 200);
        QCOMPARE(m_paths, (QList<QByteArray>{"/start", "/canonical", "/second"}));
    }

    void fullHostDoesNotBlockAnother()
    {
        occupyTheHost();
        LoopbackServer other([](const ReceivedRequest &) { return jsonAnswer(200, "{}"); });
        HttpRequest request;
        request.url = other.url();
        QCOMPARE(HttpFixture::send(*m_queue, request)->answer().status, 200);
    }

    void callMayOutliveTheQueue()
    {
        const auto sent = send();
        m_queue.reset();
        sent->call.reset();
        QVERIFY(!sent->outcome.came());
    }

    void longPausesAreFaults_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<ServiceFailure>("kind");
        QTest::newRow("too fast") << 429 << ServiceFailure::TooManyRequests;
        QTest::newRow("down") << 503 << ServiceFailure::Unavailable;
    }
    void longPausesAreFaults()
    {
        QFETCH(const int, status);
        m_answers = {ServedAnswer{status, {{"Retry-After", "3600"}}, {}}, jsonAnswer(200, "{}")};
        const auto first = send();
        QTEST(first->kind(), "kind");
        const QDateTime end = m->clock.date().addSecs(3600);
        QCOMPARE(first->outcome.error().pause->begin, m->clock.date());
        QCOMPARE(first->outcome.error().pause->end, end);
        // Until then no request is sent.
        m->clock.setLongestAutomaticWait(0ms);
        m->clock.advance(30min);
        const auto second = send();
        QVERIFY(!second->outcome.came());
        QTEST(second->kind(), "kind");
        QCOMPARE(second->outcome.error().pause->begin, end.addSecs(-1800));
        QCOMPARE(second->outcome.error().pause->end, end);
        QCOMPARE(m_times.size(), 1);
        m->clock.advance(30min);
        QCOMPARE(send()->answer().status, 200);
    }

    void waitingRequestsFailAtALongPause()
    {
        m_answers = {ServedAnswer{429, {{"Retry-After", "3600"}}, {}}, jsonAnswer(200, "{}")};
        for (int i = 0; i < 6; ++i)
            send();
        m->clock.setLongestAutomaticWait(0ms);
        // Four went out together; the last two wait for the rate.
        for (const int i : {0, 4, 5})
            QCOMPARE(m_sent[i]->kind(), ServiceFailure::TooManyRequests);
        QCOMPARE(m_times.size(), 4);
    }

    void redirectsFailAtALongPause()
    {
        m_answers = {ServedAnswer{301, {{"Location", "/canonical"}}, "x", Delivery::Dripped},
                     ServedAnswer{429, {{"Retry-After", "3600"}}, {}}};
        const auto redirected = send();
        QTRY_COMPARE_WITH_TIMEOUT(m_paths.size(), 1, WaitLimit);
        const auto refused = send(Method::Get, u"/refused"_s);
        QTRY_VERIFY_WITH_TIMEOUT(comes(*refused), WaitLimit);
        QCOMPARE(refused->kind(), ServiceFailure::TooManyRequests);
        QVERIFY(!redirected->outcome.came());
        m->server.drip();
        QCOMPARE(redirected->kind(), ServiceFailure::TooManyRequests);
        QVERIFY(redirected->outcome.error().pause);
        QCOMPARE(m_paths, (QList<QByteArray>{"/start", "/refused"}));
    }

    void pauseIsReportedWhileItIsWaitedFor_data()
    {
        QTest::addColumn<bool>("isCancelled");
        QTest::addColumn<bool>("isAwaited");
        QTest::addColumn<QList<Clock::Duration>>("reports"); // 0 for the end
        QTest::newRow("to its end") << false << true << QList<Clock::Duration>{3s, 0s};
        QTest::newRow("until the last is cancelled") << true << true << QList<Clock::Duration>{3s, 0s};
        QTest::newRow("not to a person who does not wait") << false << false << QList<Clock::Duration>();
    }
    void pauseIsReportedWhileItIsWaitedFor()
    {
        QFETCH(const bool, isCancelled);
        QFETCH(const bool, isAwaited);
        QFETCH(const QList<Clock::Duration>, reports);
        QList<Clock::Duration> reported;
        m_queue->setPauseObserver(
            [&](std::optional<Clock::Duration> pause) { reported += pause.value_or(0s); });
        m_answers = {ServedAnswer{429, {{"Retry-After", "3"}}, {}}, jsonAnswer(200, "{}")};
        m->clock.setLongestAutomaticWait(0ms);
        HttpRequest request = m->request();
        request.isAwaited = isAwaited;
        const auto first = HttpFixture::send(*m_queue, request);
        QTRY_COMPARE_WITH_TIMEOUT(m->clock.pending(), QList<Clock::Duration>{3s}, WaitLimit);
        const auto second =
            HttpFixture::send(*m_queue, request); // waits as well, which is not reported again
        QCOMPARE(reported, reports.mid(0, 1));
        if (isCancelled) {
            first->call.reset();
            QCOMPARE(reported, reports.mid(0, 1));
            second->call.reset();
        } else {
            m->clock.advance(3s);
            QCOMPARE(first->answer().status, 200);
            QCOMPARE(second->answer().status, 200);
        }
        QCOMPARE(reported, reports);
        m_queue->setPauseObserver({});
    }

private:
    void makeQueue(const RequestQueue::Rate &rate)
    {
        m_sent.clear();
        m_queue = std::make_unique<RequestQueue>(m->clock, rate);
        m_queue->setJitter([] { return 0.0; });
    }
    /// With requests that the server does not answer.
    void occupyTheHost(int count = RequestQueue::ConnectionsAtAHost)
    {
        makeQueue({1000, 1ms});
        m_answers = {ServedAnswer{200, {}, {}, Delivery::Silent}};
        for (int i = 0; i < count; ++i)
            send();
        QTRY_COMPARE_WITH_TIMEOUT(m_paths.size(), count, WaitLimit);
    }
    /// Time stands still while requests run; what is due happens.
    bool comes(const Sent &sent)
    {
        m->clock.advance(0ms);
        return sent.outcome.came();
    }
    std::shared_ptr<Sent> send(Method method = Method::Get, const QString &path = u"/start"_s)
    {
        m_sent += HttpFixture::send(*m_queue, m->request(method, path));
        return m_sent.constLast();
    }

    Sandbox m_sandbox;
    std::unique_ptr<HttpFixture> m;
    std::unique_ptr<RequestQueue> m_queue;
    QList<ServedAnswer> m_answers;
    QList<Clock::Duration> m_times;
    QList<QByteArray> m_paths;
    QList<std::shared_ptr<Sent>> m_sent;
};

PLOVENDIX_TEST(RequestQueueTest)
#include "RequestQueueTest.moc"
