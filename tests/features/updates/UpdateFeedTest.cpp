#include <features/updates/UpdateFeed.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/standin/LoopbackServer.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
const QByteArray Feed =
    "<rss xmlns:u=\"https://www.quorvane.example/xml/updates/1\"><channel><item><u:version>1.1</u:version>"
    "</item></channel></rss>";
const QString NoFeed = u"What the update server sent is no list of versions."_s;
const QString OtherPage = u"Something else answered in place of the update server."_s;
const QString Unavailable = u"The update server is not available right now."_s;
} // namespace

class UpdateFeedTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    ManualClock m_clock;
    HttpClient m_client{m_clock};
    std::unique_ptr<LoopbackServer> m_server;
    ServedAnswer m_answer;
    std::unique_ptr<Caught<AppcastFeed>> m_caught;
    HttpCall m_call;

    void start(const QString &address)
    {
        m_caught = std::make_unique<Caught<AppcastFeed>>();
        m_call = fetchFeed(m_client, address, m_caught->completion());
        QVERIFY(!m_caught->came());
    }
    void start() { start(m_server->url(u"/appcast.xml"_s).toString()); }
    void waitForFailure(const QString &sentence)
    {
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        QVERIFY(!**m_caught);
        const QString said = (*m_caught)->error().localizedDescription;
        QVERIFY2(said.startsWith(sentence), qPrintable(said));
    }

private Q_SLOTS:
    void init()
    {
        m_answer = {200, {{"Content-Type", "application/rss+xml"}}, Feed};
        m_server = std::make_unique<LoopbackServer>([this](const ReceivedRequest &) { return m_answer; });
    }
    void cleanup()
    {
        m_call.reset();
        m_server.reset();
    }

    void feedIsFetchedAndRead()
    {
        start();
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        QCOMPARE((***m_caught).items.constFirst().version, u"1.1"_s);
        const ReceivedRequest request = m_server->requests().constFirst();
        QCOMPARE(request.method + ' ' + request.target, "GET /appcast.xml");
        QCOMPARE(request.header("User-Agent"), "Plovendix v1.0.0");
        QVERIFY(request.header("Cookie").isEmpty());
    }

    void uselessAnswersAreFailures_data()
    {
        QTest::addColumn<ServedAnswer>("answer");
        QTest::addColumn<QString>("sentence");
        for (const int status : {400, 403, 404, 304})
            QTest::addRow("%d", status) << ServedAnswer{status, {}, {}} << NoFeed;
        for (const int status : {429, 500, 503})
            QTest::addRow("%d", status) << ServedAnswer{status, {}, {}} << Unavailable;
        QTest::newRow("a portal") << ServedAnswer{200, {}, "<!DOCTYPE html><html><body>Sign in</body></html>"}
                                  << OtherPage;
        QTest::newRow("too large") << ServedAnswer{200, {}, Feed + QByteArray(Appcast::MaxBytes, ' ')}
                                   << u"The list of versions is too long"_s;
        QTest::newRow("larger than is read")
            << ServedAnswer{200, {}, QByteArray(5 * Appcast::MaxBytes, ' ')} << OtherPage;
        QTest::newRow("a redirect to another host")
            << ServedAnswer{302, {{"Location", "http://portal.example/login"}}, {}} << OtherPage;
        ServedAnswer broken{200, {}, Feed};
        broken.delivery = Delivery::LengthTooLong;
        QTest::newRow("a broken connection") << broken << Unavailable;
    }
    void uselessAnswersAreFailures()
    {
        QFETCH(const ServedAnswer, answer);
        QFETCH(const QString, sentence);
        m_answer = answer;
        start();
        waitForFailure(sentence);
    }

    void unknownNameIsOffline()
    {
        start(u"https://updates.invalid/feed.xml"_s);
        waitForFailure(u"There is no connection to the update server."_s);
    }

    void silenceEndsInATimeout()
    {
        m_answer.delivery = Delivery::StalledAfterHeaders;
        start();
        QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, WaitLimit);
        m_clock.advance(30s);
        waitForFailure(u"The update server did not answer in time."_s);
    }

    void onlySecureAddressesAreAsked()
    {
        for (const QString &address : {QString(), u"http://updates.example/feed.xml"_s, u"https://a b/"_s}) {
            start(address);
            waitForFailure(u"The service cannot be asked at the address in the settings"_s);
        }
    }

    void releasedCallIsNeverAnswered()
    {
        m_answer.delivery = Delivery::Silent;
        start();
        QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, WaitLimit);
        m_call.reset();
        QTRY_COMPARE_WITH_TIMEOUT(m_server->openConnections(), 0, WaitLimit);
        QVERIFY(!m_caught->came());
    }
};

PLOVENDIX_TEST(UpdateFeedTest)
#include "UpdateFeedTest.moc"
