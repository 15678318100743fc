#include "HttpFixture.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/standin/Packing.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Method = HttpRequest::Method;

Q_DECLARE_METATYPE(ServedAnswer)

class HttpClientTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m = std::make_unique<HttpFixture>();
        m_client = std::make_unique<HttpClient>(m->clock);
    }
    void cleanup()
    {
        m_client.reset();
        m.reset();
    }

    void everyStatusIsAnAnswer_data()
    {
        QTest::addColumn<int>("status");
        for (const int status : {200, 204, 304, 400, 401, 403, 404, 406, 410, 429, 500, 503})
            QTest::addRow("%d", status) << status;
    }
    void everyStatusIsAnAnswer()
    {
        QFETCH(const int, status);
        const QByteArray body = status == 204 || status == 304 ? QByteArray() : "body";
        m->answer = {status, {{"X-Reason", "because"}}, body};
        const auto sent = get();
        QCOMPARE(sent->answer().status, status);
        QCOMPARE(sent->answer().header("x-reason"), "because");
        QCOMPARE(sent->answer().body, body);
    }

    void requestCarriesTheNameAndTheGivenHeaders()
    {
        QCOMPARE(get()->answer().status, 200);
        const ReceivedRequest request = m->server.requests().constFirst();
        QCOMPARE(request.header("User-Agent"), "Plovendix v1.0.0");
        QCOMPARE(request.header("Api-Key"), "abc");
        // Qt unpacks answers only if it made the offer itself.
        QVERIFY(request.header("Accept-Encoding").contains("gzip"));
        QVERIFY(!request.headers.contains("upgrade"));
    }

    void wholeAnswersAreTaken_data()
    {
        QTest::addColumn<ServedAnswer>("answer");
        const QByteArray body(5000, 'x');
        QTest::newRow("packed") << ServedAnswer{200, {{"Content-Encoding", "gzip"}}, gzipped(body)};
        QTest::newRow("chunked") << ServedAnswer{200, {}, body, Delivery::Chunked};
    }
    void wholeAnswersAreTaken()
    {
        QFETCH(const ServedAnswer, answer);
        m->answer = answer;
        QCOMPARE(get()->answer().body, QByteArray(5000, 'x'));
    }

    void brokenAnswersAreFaults_data()
    {
        QTest::addColumn<ServedAnswer>("answer");
        QTest::addColumn<ServiceFailure>("kind");
        QTest::addColumn<QString>("detail");
        const QByteArray body(3000, 'x');
        const auto row = [](const char *name, const ServedAnswer &answer, ServiceFailure kind,
                            const QString &detail = {}) { QTest::newRow(name) << answer << kind << detail; };
        row("shorter than its length", {200, {}, body, Delivery::LengthTooLong}, ServiceFailure::Unavailable);
        row("nothing after the headers", {200, {}, {}, Delivery::LengthTooLong}, ServiceFailure::Unavailable);
        row("chunks without the last", {200, {}, body, Delivery::ChunkedWithoutEnd},
            ServiceFailure::Unavailable);
        row("closed before the answer", {200, {}, body, Delivery::ClosedBefore}, ServiceFailure::Unavailable);
        row("cut before its announced close", {200, {{"Connection", "close"}}, body, Delivery::LengthTooLong},
            ServiceFailure::Unavailable);
        row("too large", {200, {}, QByteArray(5 * 1024 * 1024, 'x')}, ServiceFailure::BadAnswer,
            u"127.0.0.1: the answer is too large"_s);
        row("bomb", {200, {{"Content-Encoding", "gzip"}}, gzipped(QByteArray(16 * 1024 * 1024, ' '))},
            ServiceFailure::BadAnswer);
    }
    void brokenAnswersAreFaults()
    {
        QFETCH(const ServedAnswer, answer);
        QFETCH(const QString, detail);
        m->answer = answer;
        const auto sent = get();
        QTEST(sent->kind(), "kind");
        QVERIFY2(sent->outcome.error().detail.contains(detail), qPrintable(sent->outcome.error().detail));
    }

    void unchangedAnswerThatNamesALengthIsWhole()
    {
        m->answer = {304, {{"Connection", "close"}, {"Content-Length", "4000"}}, {}, Delivery::ClosedAfter};
        const auto sent = get();
        QCOMPARE(sent->answer().status, 304);
        QCOMPARE(sent->answer().header("Content-Length"), "4000");
    }

    void lengthIsComparedWithTheBody_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("length");
        QTest::addColumn<QByteArray>("encoding");
        QTest::addColumn<int>("bytes");
        QTest::addColumn<bool>("isCut");
        const QByteArray none;
        QTest::newRow("nothing of it") << 200 << QByteArray("4000") << none << 0 << true;
        QTest::newRow("most of it") << 200 << QByteArray("4000") << none << 3999 << true;
        QTest::newRow("all of it") << 200 << QByteArray("4000") << none << 4000 << false;
        QTest::newRow("an error's page") << 500 << QByteArray("4000") << none << 10 << true;
        QTest::newRow("no length") << 200 << none << none << 10 << false;
        QTest::newRow("no number") << 200 << QByteArray("many") << none << 10 << false;
        QTest::newRow("a packed body's length")
            << 200 << QByteArray("4000") << QByteArray("gzip") << 10 << false;
        QTest::newRow("of an unchanged answer") << 304 << QByteArray("4000") << none << 0 << false;
    }
    /// Qt now and then calls an answer complete whose connection ended right after its headers.
    void lengthIsComparedWithTheBody()
    {
        QFETCH(const int, status);
        QFETCH(const QByteArray, length);
        QFETCH(const QByteArray, encoding);
        QFETCH(const int, bytes);
        HttpAnswer answer{status, {}, QByteArray(bytes, 'x')};
        if (!length.isEmpty())
            answer.headers["content-length"] = length;
        if (!encoding.isEmpty())
            answer.headers["content-encoding"] = encoding;
        QTEST(answer.isCutShort(), "isCut");
    }

    void refusedConnectionIsUnavailable()
    {
        m->server.stop();
        QCOMPARE(get()->kind(), ServiceFailure::Unavailable);
    }

    void unknownNameIsOffline()
    {
        HttpRequest request;
        request.url = QUrl(u"https://nowhere.invalid/"_s);
        QCOMPARE(HttpFixture::send(*m_client, request, HostRules({u"nowhere.invalid"_s}))->kind(),
                 ServiceFailure::Offline);
    }

    void forbiddenAddressesAreNotAsked()
    {
        const auto sent = HttpFixture::send(*m_client, m->request(), HostRules({u"127.0.0.1"_s}));
        QVERIFY(!sent->outcome.came());
        QCOMPARE(sent->kind(), ServiceFailure::ForbiddenAddress);
        QCOMPARE(m->server.requests().size(), 0);
    }

    void silenceEndsAfterTwentySeconds()
    {
        m->answer.delivery = Delivery::StalledAfterHeaders;
        const auto sent = HttpFixture::send(*m_client, m->request());
        QTRY_COMPARE_WITH_TIMEOUT(m->server.requests().size(), 1, WaitLimit);
        waitForLimits({20s, 60s});
        m->clock.advance(19s);
        QVERIFY(!sent->outcome.came());
        m->clock.advance(1s);
        QCOMPARE(sent->kind(), ServiceFailure::Timeout);
    }

    void drippingEndsAtTheDeadline()
    {
        m->answer.body = QByteArray(100, 'x');
        m->answer.delivery = Delivery::Dripped;
        const auto sent = HttpFixture::send(*m_client, m->request());
        QTRY_COMPARE_WITH_TIMEOUT(m->server.requests().size(), 1, WaitLimit);
        waitForLimits({20s, 60s});
        for (int drop = 1; drop < 4; ++drop) {
            m->clock.advance(15s);
            m->server.drip();
            // Each byte begins a new silence, and only the limit of the whole goes on.
            waitForLimits(drop < 3 ? QList<Clock::Duration>{20s, Clock::Duration(60s) - drop * 15s}
                                   : QList<Clock::Duration>{15s, 20s});
        }
        QVERIFY(!sent->outcome.came());
        m->clock.advance(15s);
        QCOMPARE(sent->kind(), ServiceFailure::Timeout);
    }

    void droppedCallIsNeverAnswered()
    {
        m->answer.delivery = Delivery::Silent;
        const auto sent = HttpFixture::send(*m_client, m->request());
        QTRY_COMPARE_WITH_TIMEOUT(m->server.requests().size(), 1, WaitLimit);
        sent->call.reset();
        QTRY_COMPARE_WITH_TIMEOUT(m->server.openConnections(), 0, WaitLimit);
        QVERIFY(!sent->outcome.came());
        QCOMPARE(m->clock.pending(), QList<Clock::Duration>());
    }

    void callMayBeDroppedByItsCompletion()
    {
        int answers = 0;
        HttpCall call = m_client->send(m->request(), HostRules({}, HostRules::Loopback::Accepted),
                                       [&](const HttpResult &) {
                                           call.reset();
                                           ++answers;
                                       });
        QTRY_COMPARE_WITH_TIMEOUT(answers, 1, WaitLimit);
    }

    void redirectsAreFollowedOnTheSameHost()
    {
        m->served = [](const ReceivedRequest &request) {
            return request.target == "/start"
                       ? ServedAnswer{301, {{"Location", "/canonical?a=b%2Cc+d"}}, "moved"}
                       : jsonAnswer(200, "{}");
        };
        const auto sent = get();
        QCOMPARE(sent->answer().body, "{}");
        QVERIFY(sent->answer().header("Location").isEmpty());
        QCOMPARE(m->server.requests().constLast().target, "/canonical?a=b%2Cc+d");
        QCOMPARE(m->server.requests().constLast().header("Api-Key"), "abc");
    }

    void redirectLoopEndsAfterThree()
    {
        m->answer = {301, {{"Location", "/start"}}, {}};
        QCOMPARE(get()->kind(), ServiceFailure::BadAnswer);
        QCOMPARE(m->server.requests().size(), 4);
    }

    void redirectsElsewhereAreNotFollowed_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("another port") << u"(other)"_s;
        QTest::newRow("a user's name") << u"(user)"_s;
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
        else if (target == u"(user)"_s)
            target = m->server.url(u"/again"_s).toString().replace(u"//"_s, u"//user:word@"_s);
        m->answer = {302, {{"Location", target.toLatin1()}}, {}};
        QCOMPARE(get()->kind(), ServiceFailure::BadAnswer);
        QCOMPARE(other.requests().size(), 0);
        QCOMPARE(m->server.requests().size(), 1);
    }

    void redirectWaitsForItsPace()
    {
        m->answer = {301, {{"Location", "/start"}}, {}};
        HttpClient::Follow follow;
        const HttpCall call = m_client->send(
            m->request(), HostRules({}, HostRules::Loopback::Accepted), [](const HttpResult &) {},
            [&](const HttpClient::Follow &next) { follow = next; });
        QTRY_VERIFY_WITH_TIMEOUT(follow, WaitLimit);
        QCOMPARE(m->clock.pending(), QList<Clock::Duration>()); // nothing ends it meanwhile
        QCOMPARE(m->server.requests().size(), 1);
        std::exchange(follow, nullptr)();
        QTRY_COMPARE_WITH_TIMEOUT(m->server.requests().size(), 2, WaitLimit);
    }

    void redirectsShareOneTimeLimit_data()
    {
        QTest::addColumn<int>("redirects");
        QTest::addColumn<Clock::Duration>("wait"); // before each
        QTest::addColumn<Clock::Duration>("left");
        QTest::newRow("none") << 0 << Clock::Duration(0s) << Clock::Duration(60s);
        QTest::newRow("a chain") << 3 << Clock::Duration(11s) << Clock::Duration(27s);
        QTest::newRow("hardly any left") << 1 << Clock::Duration(54s) << Clock::Duration(6s);
    }
    void redirectsShareOneTimeLimit()
    {
        QFETCH(const int, redirects);
        QFETCH(const Clock::Duration, wait);
        QFETCH(const Clock::Duration, left);
        m->served = [this, redirects](const ReceivedRequest &) {
            return m->server.requests().size() > redirects ? ServedAnswer{200, {}, {}, Delivery::Silent}
                                                           : ServedAnswer{301, {{"Location", "/start"}}, {}};
        };
        Caught<HttpAnswer, TransportFault> outcome;
        HttpClient::Follow follow;
        const HttpCall call =
            m_client->send(m->request(), HostRules({}, HostRules::Loopback::Accepted), outcome.completion(),
                           [&](const HttpClient::Follow &next) { follow = next; });
        for (int i = 0; i < redirects; ++i) {
            QTRY_VERIFY_WITH_TIMEOUT(follow, WaitLimit);
            m->clock.advance(wait);
            std::exchange(follow, nullptr)();
        }
        waitForLimits(left < 20s ? QList<Clock::Duration>{left, 20s} : QList<Clock::Duration>{20s, left});
        if (left > 20s)
            return;
        m->clock.advance(left);
        QCOMPARE(outcome.error().kind, ServiceFailure::Timeout);
    }

    void ordersAreNotRedirected()
    {
        m->answer = {307, {{"Location", "/again"}}, {}};
        HttpRequest order = m->request(Method::Post);
        order.body = "{}";
        QCOMPARE(HttpFixture::send(*m_client, order)->answer().status, 307);
        QCOMPARE(m->server.requests().size(), 1);
    }

    void orderIsSentOnceEvenWhenTheConnectionBreaks()
    {
        // The first answer leaves a kept connection, on which the order then gets none.
        QCOMPARE(get()->answer().status, 200);
        m->answer.delivery = Delivery::ClosedBefore;
        m->server.forgetRequests();
        HttpRequest order = m->request(Method::Post);
        order.body = R"({"file_id":1})";
        order.setHeader("Content-Type", "application/json");
        QCOMPARE(HttpFixture::send(*m_client, order)->kind(), ServiceFailure::Unavailable);
        QCOMPARE(m->server.requests().size(), 1);
        QCOMPARE(m->server.requests().constFirst().body, R"({"file_id":1})");
    }

    void cookiesAreNotKept()
    {
        m->answer.setHeader("Set-Cookie", "track=me; Path=/");
        for (int time = 0; time < 2; ++time)
            QCOMPARE(get()->answer().status, 200);
        QVERIFY(m->server.requests().constLast().header("Cookie").isEmpty());
    }

private:
    std::shared_ptr<Sent> get()
    {
        HttpRequest request = m->request();
        request.setHeader("Api-Key", "abc");
        return HttpFixture::send(*m_client, request);
    }
    void waitForLimits(const QList<Clock::Duration> &limits)
    {
        QTRY_COMPARE_WITH_TIMEOUT(m->clock.pending(), limits, WaitLimit);
    }

    Sandbox m_sandbox;
    std::unique_ptr<HttpFixture> m;
    std::unique_ptr<HttpClient> m_client;
};

PLOVENDIX_TEST(HttpClientTest)
#include "HttpClientTest.moc"
