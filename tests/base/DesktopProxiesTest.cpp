#include <base/DesktopProxies.h>
#include <base/GObjectPointer.h>
#include <tests/support/TestMain.h>

#include <QTest>

#include <gio/gio.h>

using namespace Qt::StringLiterals;

class DesktopProxiesTest final : public QObject
{
    Q_OBJECT

private:
    static GObjectPointer<GProxyResolver> resolver(const char *proxy, const QByteArray &exempt = {})
    {
        QByteArray host = exempt;
        char *hosts[] = {exempt.isEmpty() ? nullptr : host.data(), nullptr};
        return GObjectPointer<GProxyResolver>(g_simple_proxy_resolver_new(proxy, hosts));
    }

private Q_SLOTS:
    void settingsNameTheProxy()
    {
        const auto settings = resolver("http://proxy.example:3128", "near.example");
        const DesktopProxies proxies(settings.get());
        QCOMPARE(proxies.lookUp(QUrl(u"https://far.example/"_s)),
                 QStringList{u"http://proxy.example:3128"_s});
        QCOMPARE(proxies.lookUp(QUrl(u"https://near.example/"_s)), QStringList{u"direct://"_s});
    }

    void socksIsNamedAsSuch()
    {
        const auto settings = resolver("socks5://proxy.example:1080");
        QCOMPARE(DesktopProxies(settings.get()).lookUp(QUrl(u"https://far.example/"_s)),
                 QStringList{u"socks5://proxy.example:1080"_s});
    }

    void addressThatIsNoneHasNoProxy()
    {
        const auto settings = resolver("http://proxy.example:3128");
        QVERIFY(!DesktopProxies(settings.get()).lookUp(QUrl(u"no address"_s)));
    }
};

PLOVENDIX_TEST(DesktopProxiesTest)
#include "DesktopProxiesTest.moc"
