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

/// What becomes of requests while a server wants a pause, and what is told of it.
class TransportPauseTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_clock = std::make_unique<ManualClock>();
        m_times.clear();
        m_answers.clear();
        m_server = std::make_unique<LoopbackServer>([this](const ReceivedRequest &) {
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

    void pausesLongerThanTheLimitAreReported_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("too fast")
            << 429 << static_cast<int>(ServiceFailure::TooManyRequests)
            << u"The subtitle service gets too many requests from here. Try again from "_s;
        QTest::newRow("down") << 503 << static_cast<int>(ServiceFailure::Unavailable)
                              << u"The subtitle service is not available right now. Try again from "_s;
    }
    void pausesLongerThanTheLimitAreReported()
    {
        QFETCH(const int, status);
        QFETCH(const int, kind);
        QFETCH(const QString, sentence);
        m_answers = {ServedAnswer{status, {{"Retry-After", "3600"}}, {}}, jsonAnswer(200, "{}")};
        const auto first = send(HttpRequest::Method::Get);
        QTRY_VERIFY_WITH_TIMEOUT(first->came(), WaitLimit);
        QVERIFY(!**first);
        QCOMPARE((*first)->error().code, kind);
        QVERIFY2((*first)->error().localizedDescription.startsWith(sentence),
                 qPrintable((*first)->error().localizedDescription));
        QVERIFY((*first)->error().localizedDescription.contains(u"(in 1 h 0 min)"_s));
        // The next ones do not go there before that.
        m_clock->setLongestAutomaticWait(0ms);
        m_clock->advance(30min);
        const auto second = send(HttpRequest::Method::Get);
        QVERIFY(!second->came());
        QTRY_VERIFY_WITH_TIMEOUT(comes(*second), WaitLimit);
        QVERIFY((*second)->error().localizedDescription.contains(u"(in 30 min)"_s));
        QCOMPARE(m_times.size(), 1);
        m_clock->advance(30min);
        const auto third = send(HttpRequest::Method::Get);
        QTRY_VERIFY_WITH_TIMEOUT(comes(*third), WaitLimit);
        QVERIFY(**third);
        QCOMPARE(m_times.size(), 2);
    }

    void waitingRequestsFailAtALongPause()
    {
        m_clock->setLongestAutomaticWait(0ms);
        m_answers = {ServedAnswer{429, {{"Retry-After", "3600"}}, {}}, jsonAnswer(200, "{}")};
        QList<std::shared_ptr<Caught<HttpAnswer>>> caught;
        for (int i = 0; i < 6; ++i)
            caught += send(HttpRequest::Method::Get);
        // Four went out together; the last two wait for the rate.
        QTRY_VERIFY_WITH_TIMEOUT(comes(*caught[0]) && comes(*caught[5]), WaitLimit);
        for (const int i : {0, 4, 5})
            QCOMPARE(kindOf((*caught[i])->error()), ServiceFailure::TooManyRequests);
        QCOMPARE(m_times.size(), 4);
    }

    void aPauseIsToldWhileItIsWaitedFor()
    {
        QList<int> told;
        m_transport->setPauseObserver([&told](std::optional<Clock::Duration> pause) {
            told += pause ? static_cast<int>(pause->count()) : 0;
        });
        m_answers = {ServedAnswer{429, {{"Retry-After", "3"}}, {}}, jsonAnswer(200, "{}")};
        m_clock->setLongestAutomaticWait(0ms);
        const auto first = send(HttpRequest::Method::Get);
        QTRY_COMPARE_WITH_TIMEOUT((comes(*first), told), QList<int>{3000}, WaitLimit);
        const auto second = send(HttpRequest::Method::Get); // waits as well, and is no news
        QCOMPARE(told, QList<int>{3000});
        m_clock->advance(3s);
        QTRY_VERIFY_WITH_TIMEOUT(comes(*first) && comes(*second), WaitLimit);
        QCOMPARE(told, (QList<int>{3000, 0}));
        QVERIFY(**first && **second);
    }

    void cancelledPauseIsNoLongerReported()
    {
        QList<int> told;
        m_transport->setPauseObserver([&told](std::optional<Clock::Duration> pause) {
            told += pause ? static_cast<int>(pause->count()) : 0;
        });
        m_answers = {ServedAnswer{429, {{"Retry-After", "3"}}, {}}, jsonAnswer(200, "{}")};
        m_clock->setLongestAutomaticWait(0ms);
        const auto first = send(HttpRequest::Method::Get);
        QTRY_COMPARE_WITH_TIMEOUT((comes(*first), told), QList<int>{3000}, WaitLimit);
        m_calls.clear();
        QCOMPARE(told, (QList<int>{3000, 0}));
    }

private:
    /// Time stands still while something is on the wire; what is due happens.
    bool comes(const Caught<HttpAnswer> &caught)
    {
        m_clock->advance(0ms);
        return caught.came();
    }
    std::shared_ptr<Caught<HttpAnswer>> send(HttpRequest::Method method)
    {
        HttpRequest request;
        request.method = method;
        request.url = m_server->url(u"/"_s);
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
    QList<Transport::Call> m_calls;
};

PLOVENDIX_TEST(TransportPauseTest)
#include "TransportPauseTest.moc"
