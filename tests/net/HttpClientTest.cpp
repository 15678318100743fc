#include <net/HttpClient.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/standin/Deformation.h>
#include <tests/support/standin/LoopbackServer.h>
#include <tests/support/standin/Packing.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
const HostRules Here({}, HostRules::Loopback::Accepted);

ServiceFailure failureOf(const Caught<HttpAnswer> &caught)
{
    return kindOf(caught->error()).value();
}
} // namespace

class HttpClientTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_clock = std::make_unique<ManualClock>();
        m_answer = jsonAnswer(200, R"({"data":[]})");
        m_served = [this](const ReceivedRequest &) { return m_answer; };
        m_server = std::make_unique<LoopbackServer>(
            [this](const ReceivedRequest &request) { return m_served(request); });
        m_client = std::make_unique<HttpClient>(*m_clock, ServiceName::Subtitles);
    }

    void cleanup()
    {
        m_call.reset();
        m_client.reset();
        m_server.reset();
    }

    void answersWithStatusHeadersAndBody()
    {
        m_answer.setHeader("X-Reason", "because");
        m_answer.status = 404;
        get();
        QVERIFY(m_caught->came());
        const HttpAnswer &answer = ***m_caught;
        QCOMPARE(answer.status, 404);
        QCOMPARE(answer.header("x-reason"), "because");
        QCOMPARE(answer.body, R"({"data":[]})");
    }

    void everyStatusIsAnAnswer_data()
    {
        QTest::addColumn<int>("status");
        for (const int status : {200, 204, 304, 400, 401, 403, 404, 406, 410, 429, 500, 502, 503, 504})
            QTest::addRow("%d", status) << status;
    }
    void everyStatusIsAnAnswer()
    {
        QFETCH(const int, status);
        m_answer = {status, {}, status == 204 || status == 304 ? QByteArray() : "body"};
        get();
        QCOMPARE((***m_caught).status, status);
    }

    void saysItsNameAndTheGivenHeaders()
    {
        get({{"Api-Key", "abc"}, {"Accept", "*/*"}});
        const ReceivedRequest request = m_server->requests().constFirst();
        QCOMPARE(request.header("User-Agent"), "Plovendix v1.0.0");
        QCOMPARE(request.header("Api-Key"), "abc");
        QCOMPARE(request.header("Accept"), "*/*");
        // Qt unpacks by itself only where it made the offer itself.
        QVERIFY(request.header("Accept-Encoding").contains("gzip"));
        QVERIFY(!request.headers.contains("upgrade"));
    }

    void packedAnswersAreUnpacked()
    {
        m_answer.body = gzipped(m_answer.body);
        m_answer.setHeader("Content-Encoding", "gzip");
        get();
        QCOMPARE((***m_caught).body, R"({"data":[]})");
    }

    void chunkedAnswersAreWhole()
    {
        m_answer.body = QByteArray(5000, 'x');
        m_answer.delivery = Delivery::Chunked;
        get();
        QCOMPARE((***m_caught).body.size(), 5000);
    }

    void brokenAnswersAreErrors_data()
    {
        QTest::addColumn<int>("delivery");
        QTest::addColumn<int>("kind");
        const auto row = [](const char *name, Delivery delivery, ServiceFailure kind) {
            QTest::newRow(name) << static_cast<int>(delivery) << static_cast<int>(kind);
        };
        row("shorter than its length", Delivery::LengthTooLong, ServiceFailure::Unavailable);
        row("chunks without the last", Delivery::ChunkedWithoutEnd, ServiceFailure::Unavailable);
        row("closed before the answer", Delivery::ClosedBefore, ServiceFailure::Unavailable);
    }
    void brokenAnswersAreErrors()
    {
        QFETCH(const int, delivery);
        QFETCH(const int, kind);
        m_answer.body = QByteArray(3000, 'x');
        m_answer.delivery = static_cast<Delivery>(delivery);
        get();
        QCOMPARE(static_cast<int>(failureOf(*m_caught)), kind);
    }

    void bombIsRefused()
    {
        m_answer.body = gzipped(QByteArray(16 * 1024 * 1024, ' '));
        m_answer.setHeader("Content-Encoding", "gzip");
        get();
        QCOMPARE(failureOf(*m_caught), ServiceFailure::BadAnswer);
    }

    void tooLargeIsRefused()
    {
        m_answer.body = QByteArray(5 * 1024 * 1024, 'x');
        get();
        QCOMPARE(failureOf(*m_caught), ServiceFailure::BadAnswer);
        QVERIFY((*m_caught)->error().detail.contains(u"too large"_s));
    }

    void refusedConnectionIsUnavailable()
    {
        m_server->stop();
        get();
        QCOMPARE(failureOf(*m_caught), ServiceFailure::Unavailable);
    }

    void unknownNameIsOffline()
    {
        HttpRequest request;
        request.url = QUrl(u"https://nowhere.invalid/"_s);
        start(request, HostRules({u"nowhere.invalid"_s}));
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        QCOMPARE(failureOf(*m_caught), ServiceFailure::Offline);
    }

    void silenceEndsAfterTwentySeconds()
    {
        m_answer.delivery = Delivery::StalledAfterHeaders;
        start(request());
        QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, WaitLimit);
        waitForLimits({20s, 60s});
        m_clock->advance(19s);
        QVERIFY(!m_caught->came());
        m_clock->advance(1s);
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        QCOMPARE(failureOf(*m_caught), ServiceFailure::Timeout);
    }

    void drippingEndsAtTheDeadline()
    {
        m_answer.body = QByteArray(100, 'x');
        m_answer.delivery = Delivery::Dripped;
        start(request());
        QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, WaitLimit);
        waitForLimits({20s, 60s});
        for (int drop = 1; drop < 4; ++drop) {
            m_clock->advance(15s);
            m_server->drip();
            // Each byte begins a new silence, and only the whole's limit goes on.
            waitForLimits(drop < 3 ? QList<Clock::Duration>{20s, Clock::Duration(60s) - drop * 15s}
                                   : QList<Clock::Duration>{15s, 20s});
        }
        QVERIFY(!m_caught->came());
        m_clock->advance(15s);
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        QCOMPARE(failureOf(*m_caught), ServiceFailure::Timeout);
    }

    void droppedCallIsNeverAnswered()
    {
        m_answer.delivery = Delivery::Silent;
        start(request());
        QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, WaitLimit);
        m_call.reset();
        QTRY_COMPARE_WITH_TIMEOUT(m_server->openConnections(), 0, WaitLimit);
        QVERIFY(!m_caught->came());
        QCOMPARE(m_clock->pending(), QList<Clock::Duration>());
    }

    void callMayBeDroppedByItsCompletion()
    {
        int answers = 0;
        m_call = m_client->send(request(), Here, [&](const Result<HttpAnswer> &) {
            m_call.reset();
            ++answers;
        });
        QTRY_COMPARE_WITH_TIMEOUT(answers, 1, WaitLimit);
    }

    void redirectsAreFollowedOnTheSameHost()
    {
        m_served = [](const ReceivedRequest &request) {
            if (request.target == "/start")
                return ServedAnswer{301, {{"Location", "/canonical?a=b%2Cc+d"}}, {}};
            return jsonAnswer(200, "{}");
        };
        get({{"Api-Key", "abc"}});
        QCOMPARE((***m_caught).body, "{}");
        QCOMPARE(m_server->requests().constLast().target, "/canonical?a=b%2Cc+d");
        QCOMPARE(m_server->requests().constLast().header("Api-Key"), "abc");
    }

    void redirectLoopEndsAfterThree()
    {
        m_answer = {301, {{"Location", "/start"}}, {}};
        get();
        QCOMPARE(failureOf(*m_caught), ServiceFailure::BadAnswer);
        QCOMPARE(m_server->requests().size(), 4);
    }

    void redirectsElsewhereAreNotFollowed_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("another port") << u"(other)"_s;
        QTest::newRow("a public host") << u"https://elsewhere.example/"_s;
        QTest::newRow("no address") << QString();
        QTest::newRow("a file") << u"file:///etc/passwd"_s;
    }
    void redirectsElsewhereAreNotFollowed()
    {
        QFETCH(QString, target);
        LoopbackServer other([](const ReceivedRequest &) { return jsonAnswer(200, "{}"); });
        if (target == u"(other)"_s)
            target = other.url(u"/"_s).toString();
        m_answer = {302, {{"Location", target.toLatin1()}}, {}};
        get({{"Api-Key", "abc"}});
        QCOMPARE(failureOf(*m_caught), ServiceFailure::BadAnswer);
        QCOMPARE(other.requests().size(), 0);
    }

    void ordersAreNotRedirected()
    {
        m_answer = {307, {{"Location", "/again"}}, {}};
        HttpRequest order = request();
        order.method = HttpRequest::Method::Post;
        order.body = "{}";
        start(order);
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        QCOMPARE((***m_caught).status, 307);
        QCOMPARE(m_server->requests().size(), 1);
    }

    void orderIsSentOnceEvenWhenTheConnectionBreaks()
    {
        // The first answer leaves a kept connection, on which the order then gets none.
        get();
        m_answer.delivery = Delivery::ClosedBefore;
        m_server->forgetRequests();
        HttpRequest order = request();
        order.method = HttpRequest::Method::Post;
        order.body = R"({"file_id":1})";
        order.setHeader("Content-Type", "application/json");
        start(order);
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        QVERIFY(!**m_caught);
        QCOMPARE(m_server->requests().size(), 1);
        QCOMPARE(m_server->requests().constFirst().body, R"({"file_id":1})");
    }

    void forbiddenAddressesAreNotAsked()
    {
        start(request(), HostRules({u"127.0.0.1"_s}));
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        QCOMPARE(failureOf(*m_caught), ServiceFailure::Insecure);
        QCOMPARE(m_server->requests().size(), 0);
    }

    void cookiesAreNotKept()
    {
        m_answer.setHeader("Set-Cookie", "track=me; Path=/");
        get();
        get();
        QVERIFY(m_server->requests().constLast().header("Cookie").isEmpty());
    }

    void clearTextWhereTlsIsDueIsInsecure()
    {
        QTcpServer plain;
        QVERIFY(plain.listen(QHostAddress::LocalHost));
        connect(&plain, &QTcpServer::newConnection, &plain, [&plain] {
            QTcpSocket *socket = plain.nextPendingConnection();
            socket->write("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}");
        });
        HttpRequest secure;
        secure.url = QUrl(u"https://127.0.0.1:%1/"_s.arg(plain.serverPort()));
        start(secure);
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        QCOMPARE(failureOf(*m_caught), ServiceFailure::Insecure);
    }

private:
    HttpRequest request() const
    {
        HttpRequest request;
        request.url = m_server->url(u"/start"_s);
        return request;
    }

    void start(const HttpRequest &request, const HostRules &rules = Here)
    {
        m_caught = std::make_unique<Caught<HttpAnswer>>();
        m_call = m_client->send(request, rules, m_caught->completion());
    }

    void get(const QList<std::pair<QByteArray, QByteArray>> &headers = {})
    {
        HttpRequest question = request();
        question.headers = headers;
        start(question);
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
    }

    void waitForLimits(const QList<Clock::Duration> &limits)
    {
        QTRY_COMPARE_WITH_TIMEOUT(m_clock->pending(), limits, WaitLimit);
    }

    Sandbox m_sandbox;
    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<LoopbackServer> m_server;
    std::unique_ptr<HttpClient> m_client;
    std::function<ServedAnswer(const ReceivedRequest &)> m_served;
    ServedAnswer m_answer;
    std::unique_ptr<Caught<HttpAnswer>> m_caught;
    HttpClient::Call m_call;
};

PLOVENDIX_TEST(HttpClientTest)
#include "HttpClientTest.moc"
