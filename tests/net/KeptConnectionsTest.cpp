#include <net/HttpClient.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/standin/Deformation.h>
#include <tests/support/standin/LoopbackServer.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
const HostRules Here({}, HostRules::Loopback::Accepted);
}

/// Which connections serve another request, and which a sleeping machine has lost.
class KeptConnectionsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_clock = std::make_unique<ManualClock>();
        m_answer = jsonAnswer(200, "{}");
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

    void connectionsFromBeforeASleepAreNotUsed_data()
    {
        QTest::addColumn<HttpRequest::Method>("method");
        QTest::newRow("a question") << HttpRequest::Method::Get;
        QTest::newRow("an order") << HttpRequest::Method::Post;
    }
    void connectionsFromBeforeASleepAreNotUsed()
    {
        QFETCH(const HttpRequest::Method, method);
        // The network has forgotten the old connection: whatever goes there is heard of no more.
        m_served = [this, dead = std::optional<quint16>()](const ReceivedRequest &request) mutable {
            ServedAnswer answer = m_answer;
            if (dead == request.peerPort)
                answer.delivery = Delivery::Silent;
            dead = dead.value_or(request.peerPort);
            return answer;
        };
        get();
        m_clock->setDate(m_clock->date().addSecs(3600)); // the other clock stood still
        HttpRequest next = request();
        next.method = method;
        start(next);
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        QVERIFY(**m_caught);
    }

    void connectionsAreKeptWhileAwake_data()
    {
        QTest::addColumn<int>("secondsPast");
        QTest::addColumn<int>("secondsTheDateIsSet");
        QTest::newRow("a moment later") << 1 << 0;
        QTest::newRow("a while later") << 60 << 0;
        QTest::newRow("with the date put right") << 1 << 5;
        QTest::newRow("with the date set back") << 1 << -3600;
    }
    void connectionsAreKeptWhileAwake()
    {
        QFETCH(const int, secondsPast);
        QFETCH(const int, secondsTheDateIsSet);
        get();
        m_clock->advance(std::chrono::seconds(secondsPast));
        m_clock->setDate(m_clock->date().addSecs(secondsTheDateIsSet));
        get();
        QCOMPARE(m_server->requests().constFirst().peerPort, m_server->requests().constLast().peerPort);
    }

    void whatIsUnderWayIsNotCutByASleep()
    {
        m_answer.body = "slow";
        m_answer.delivery = Delivery::Dripped;
        QByteArray slow;
        HttpClient::Call slowCall;
        slowCall = m_client->send(request(), Here, [&](const Result<HttpAnswer> &outcome) {
            slow = outcome ? outcome->body : QByteArray("failed");
            slowCall.reset(); // the last that held on to the old connections
        });
        QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, WaitLimit);
        m_clock->setDate(m_clock->date().addSecs(3600));
        m_answer.delivery = Delivery::Whole;
        get();
        for (qsizetype i = 0; i < m_answer.body.size(); ++i)
            m_server->drip();
        QTRY_COMPARE_WITH_TIMEOUT(slow, "slow", WaitLimit);
    }

private:
    HttpRequest request() const
    {
        HttpRequest request;
        request.url = m_server->url(u"/"_s);
        return request;
    }
    void start(const HttpRequest &request)
    {
        m_caught = std::make_unique<Caught<HttpAnswer>>();
        m_call = m_client->send(request, Here, m_caught->completion());
    }
    void get()
    {
        start(request());
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
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

PLOVENDIX_TEST(KeptConnectionsTest)
#include "KeptConnectionsTest.moc"
