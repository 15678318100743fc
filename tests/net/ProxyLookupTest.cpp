#include "HttpFixture.h"

#include <base/GObjectPointer.h>
#include <base/MainQueue.h>
#include <net/ProxyLookup.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <gio/gio.h>

using namespace Qt::StringLiterals;

/// The proxies of the environment and of the desktop.
class ProxyLookupTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m = std::make_unique<HttpFixture>(); }
    void cleanup()
    {
        for (const char *name : {"https_proxy", "HTTPS_PROXY", "no_proxy", "all_proxy"})
            qunsetenv(name);
        m.reset();
    }

    void environmentNamesTheProxy_data()
    {
        QTest::addColumn<QByteArray>("variable"); // and its value
        QTest::addColumn<QByteArray>("exempt");
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("proxy"); // type, host and port; empty for none named
        const auto row = [](const char *variable, const char *exempt, const QString &url,
                            const QString &proxy) {
            QTest::addRow("%s, no_proxy=%s, %s", variable, exempt, qPrintable(url))
                << QByteArray(variable) << QByteArray(exempt) << url << proxy;
        };
        const QString far = u"https://api.opensubtitles.com/"_s;
        const QString none = QString::number(QNetworkProxy::NoProxy) + u" :0"_s;
        const QString http = QString::number(QNetworkProxy::HttpProxy) + u" proxy.example:3128"_s;
        const QString socks = QString::number(QNetworkProxy::Socks5Proxy) + u" proxy.example:1080"_s;
        const QString refusing = QString::number(QNetworkProxy::HttpProxy) + u" 127.0.0.1:0"_s;
        row("all_proxy=", "", far, {}); // the desktop may name one
        row("HTTPS_PROXY=proxy.example:3128", "", far, http);
        row("https_proxy=proxy.example:3128", "", u"http://api.opensubtitles.com/"_s, {});
        row("all_proxy=socks5://proxy.example", "", far, socks);
        row("https_proxy=proxy.example:3128", "", u"https://127.0.0.1/"_s, none);
        row("https_proxy=proxy.example:3128", "other.example, .opensubtitles.com", far, none);
        row("https_proxy=proxy.example:3128", "*.opensubtitles.com", far, none);
        row("https_proxy=proxy.example:3128", "API.opensubtitles.com", far, none);
        row("https_proxy=proxy.example:3128", "*", far, none);
        row("https_proxy=proxy.example:3128", "subtitles.com", far, http);
        for (const char *unreadable : {"https_proxy=proxy.example:notaport", "https_proxy=http://:3128",
                                       "https_proxy=http://", "https_proxy=a b"})
            row(unreadable, "", far, refusing);
    }
    void environmentNamesTheProxy()
    {
        QFETCH(const QByteArray, variable);
        QFETCH(const QByteArray, exempt);
        QFETCH(const QString, url);
        qputenv(variable.split('=').first().constData(), variable.split('=').last());
        qputenv("no_proxy", exempt);
        const auto proxy = environmentProxy(QUrl(url));
        QTEST(proxy ? u"%1 %2:%3"_s.arg(proxy->type()).arg(proxy->hostName()).arg(proxy->port()) : QString(),
              "proxy");
    }

    void proxyIsAskedWithoutTheKey_data()
    {
        QTest::addColumn<bool>("isOfTheDesktop");
        QTest::addColumn<int>("status");
        QTest::newRow("environment, 403") << false << 403;
        QTest::newRow("environment, 407") << false << 407;
        QTest::newRow("environment, 502") << false << 502;
        QTest::newRow("desktop, 403") << true << 403;
    }
    void proxyIsAskedWithoutTheKey()
    {
        QFETCH(const bool, isOfTheDesktop);
        QFETCH(const int, status);
        m->answer = {status, {{"Proxy-Authenticate", "Basic realm=\"x\""}}, "no"};
        if (!isOfTheDesktop)
            qputenv("https_proxy", m->server.url().toEncoded());
        // The environment's proxy comes first.
        QCOMPARE(send(isOfTheDesktop ? m->server.url().toEncoded() : "http://127.0.0.1:1")->kind(),
                 ServiceFailure::Proxy);
        const ReceivedRequest asked = m->server.requests().value(0);
        QCOMPARE(asked.method + ' ' + asked.target, "CONNECT api.opensubtitles.com:443");
        QVERIFY(asked.header("Api-Key").isEmpty());
    }

    void proxyThatCannotBeUsedIsNotLeftOut_data()
    {
        QTest::addColumn<QByteArray>("ofTheEnvironment");
        QTest::addColumn<QByteArray>("ofTheDesktop");
        QTest::newRow("of another kind") << QByteArray() << QByteArray("quic://127.0.0.1:9");
        QTest::newRow("without a host") << QByteArray() << QByteArray("http://:9");
        QTest::newRow("unreadable") << QByteArray("proxy.example:notaport") << QByteArray("direct://");
    }
    void proxyThatCannotBeUsedIsNotLeftOut()
    {
        QFETCH(const QByteArray, ofTheEnvironment);
        QFETCH(const QByteArray, ofTheDesktop);
        qputenv("https_proxy", ofTheEnvironment);
        QCOMPARE(send(ofTheDesktop)->kind(), ServiceFailure::Proxy);
    }

    void requestMayBeCancelledDuringTheLookup()
    {
        const auto sent = send(m->server.url().toEncoded());
        sent->call.reset();
        MainQueue::shared().runUntilIdle();
        QVERIFY(!sent->outcome.came());
        QCOMPARE(m->server.requests().size(), 0);
    }

private:
    /// Sends a request to a far host; `proxy` is that of the desktop.
    std::shared_ptr<Sent> send(const QByteArray &proxy)
    {
        m_desktop.reset(g_simple_proxy_resolver_new(proxy.constData(), nullptr));
        m_client = std::make_unique<HttpClient>(m->clock, m_desktop.get());
        return HttpFixture::send(*m_client, HttpFixture::farRequest(),
                                 HostRules({u"api.opensubtitles.com"_s}));
    }

    Sandbox m_sandbox;
    std::unique_ptr<HttpFixture> m;
    GObjectPointer<GProxyResolver> m_desktop;
    std::unique_ptr<HttpClient> m_client;
};

PLOVENDIX_TEST(ProxyLookupTest)
#include "ProxyLookupTest.moc"
