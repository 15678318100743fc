#include <base/GObjectPointer.h>
#include <base/MainQueue.h>
#include <net/HttpClient.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/standin/LoopbackServer.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>

#include <QTest>

#include <gio/gio.h>

using namespace Qt::StringLiterals;

namespace
{
ServiceFailure failureOf(const Caught<HttpAnswer> &caught)
{
    return kindOf(caught->error()).value();
}
} // namespace

/// The proxies of the environment and of the desktop.
class ClientProxyTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_clock = std::make_unique<ManualClock>();
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

    void proxyOfTheEnvironmentIsAskedWithoutTheKey_data()
    {
        QTest::addColumn<int>("status");
        for (const int status : {403, 407, 502})
            QTest::addRow("%d", status) << status;
    }
    void proxyOfTheEnvironmentIsAskedWithoutTheKey()
    {
        QFETCH(const int, status);
        m_served = [status](const ReceivedRequest &) {
            return ServedAnswer{status, {{"Proxy-Authenticate", "Basic realm=\"x\""}}, "no"};
        };
        qputenv("https_proxy", m_server->url().toEncoded());
        HttpRequest far;
        far.url = QUrl(u"https://api.opensubtitles.com/api/v1/subtitles"_s);
        far.setHeader("Api-Key", "abc");
        start(far, HostRules({u"api.opensubtitles.com"_s}));
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        qunsetenv("https_proxy");
        QVERIFY2(failureOf(*m_caught) == ServiceFailure::Proxy, qPrintable((*m_caught)->error().detail));
        const ReceivedRequest asked = m_server->requests().constFirst();
        QCOMPARE(asked.method + ' ' + asked.target, "CONNECT api.opensubtitles.com:443");
        QVERIFY(asked.header("Api-Key").isEmpty());
    }

    void proxyOfTheDesktopIsAsked()
    {
        const GObjectPointer<GProxyResolver> desktop(
            g_simple_proxy_resolver_new(m_server->url().toEncoded().constData(), nullptr));
        m_client = std::make_unique<HttpClient>(*m_clock, ServiceName::Subtitles, desktop.get());
        m_served = [](const ReceivedRequest &) { return ServedAnswer{403, {}, "no"}; };
        HttpRequest far;
        far.url = QUrl(u"https://api.opensubtitles.com/api/v1/subtitles?query=x"_s);
        far.setHeader("Api-Key", "abc");
        start(far, HostRules({u"api.opensubtitles.com"_s}));
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        QVERIFY2(failureOf(*m_caught) == ServiceFailure::Proxy, qPrintable((*m_caught)->error().detail));
        const ReceivedRequest asked = m_server->requests().value(0);
        QCOMPARE(asked.method + ' ' + asked.target, "CONNECT api.opensubtitles.com:443");
        QVERIFY(asked.header("Api-Key").isEmpty());
    }

    void proxyOfTheEnvironmentComesFirst()
    {
        const GObjectPointer<GProxyResolver> desktop(
            g_simple_proxy_resolver_new("http://127.0.0.1:1", nullptr));
        m_client = std::make_unique<HttpClient>(*m_clock, ServiceName::Subtitles, desktop.get());
        m_served = [](const ReceivedRequest &) { return ServedAnswer{403, {}, "no"}; };
        qputenv("https_proxy", m_server->url().toEncoded());
        HttpRequest far;
        far.url = QUrl(u"https://api.opensubtitles.com/"_s);
        start(far, HostRules({u"api.opensubtitles.com"_s}));
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        qunsetenv("https_proxy");
        QCOMPARE(m_server->requests().size(), 1);
    }

    void desktopProxyThatTheToolkitCannotUseRefuses_data()
    {
        QTest::addColumn<QByteArray>("proxy");
        QTest::newRow("another kind") << QByteArray("quic://127.0.0.1:9");
        QTest::newRow("no host") << QByteArray("http://:9");
    }
    void desktopProxyThatTheToolkitCannotUseRefuses()
    {
        QFETCH(const QByteArray, proxy);
        const GObjectPointer<GProxyResolver> desktop(g_simple_proxy_resolver_new(proxy.constData(), nullptr));
        m_client = std::make_unique<HttpClient>(*m_clock, ServiceName::Subtitles, desktop.get());
        HttpRequest far;
        far.url = QUrl(u"https://api.opensubtitles.com/"_s);
        start(far, HostRules({u"api.opensubtitles.com"_s}));
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        QVERIFY2(failureOf(*m_caught) == ServiceFailure::Proxy, qPrintable((*m_caught)->error().detail));
    }

    void requestMayBeGivenUpDuringTheLookup()
    {
        const GObjectPointer<GProxyResolver> desktop(
            g_simple_proxy_resolver_new(m_server->url().toEncoded().constData(), nullptr));
        m_client = std::make_unique<HttpClient>(*m_clock, ServiceName::Subtitles, desktop.get());
        HttpRequest far;
        far.url = QUrl(u"https://api.opensubtitles.com/"_s);
        start(far, HostRules({u"api.opensubtitles.com"_s}));
        m_call.reset();
        MainQueue::shared().runUntilIdle();
        QVERIFY(!m_caught->came());
        QCOMPARE(m_server->requests().size(), 0);
    }

    void proxyThatCannotBeReadIsSaid()
    {
        qputenv("https_proxy", "proxy.example:notaport");
        HttpRequest far;
        far.url = QUrl(u"https://api.opensubtitles.com/api/v1/subtitles"_s);
        start(far, HostRules({u"api.opensubtitles.com"_s}));
        QTRY_VERIFY_WITH_TIMEOUT(m_caught->came(), WaitLimit);
        qunsetenv("https_proxy");
        QVERIFY2(failureOf(*m_caught) == ServiceFailure::Proxy, qPrintable((*m_caught)->error().detail));
    }

private:
    void start(const HttpRequest &request, const HostRules &rules)
    {
        m_caught = std::make_unique<Caught<HttpAnswer>>();
        m_call = m_client->send(request, rules, m_caught->completion());
    }

    Sandbox m_sandbox;
    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<LoopbackServer> m_server;
    std::unique_ptr<HttpClient> m_client;
    std::function<ServedAnswer(const ReceivedRequest &)> m_served;
    std::unique_ptr<Caught<HttpAnswer>> m_caught;
    HttpClient::Call m_call;
};

PLOVENDIX_TEST(ClientProxyTest)
#include "ClientProxyTest.moc"
