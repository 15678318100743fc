#include "RestFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Where a login leads.
class RestHostsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<RestFixture>(m_sandbox); }
    void cleanup()
    {
        QCOMPARE(m_fixture->standIn.complaints(), QStringList());
        m_fixture.reset();
    }

    void vipHostGetsTheTokenEachTime()
    {
        m_fixture->useAccount();
        m_fixture->standIn.select(u"vip"_s);
        m_fixture->download(m_fixture->subtitle())->value();
        m_fixture->search()->value();
        QCOMPARE(m_fixture->standIn.main().requests().size(), 1); // the login
        QCOMPARE(m_fixture->standIn.vip().requests().size(), 2);
    }

    void hostsOfALoginAreChecked_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("base");
        const QString usual = u"https://api.opensubtitles.com/api/v1"_s;
        QTest::newRow("vip") << u"vip-api.opensubtitles.com"_s
                             << u"https://vip-api.opensubtitles.com/api/v1"_s;
        QTest::newRow("usual") << u"api.opensubtitles.com"_s << usual;
        for (const char *host :
             {"evil.example", "api.opensubtitles.com.evil.example", "127.0.0.1:80", "", "a b",
              "user@vip-api.opensubtitles.com", "vip-api.opensubtitles.com/x", "www.opensubtitles.com"})
            QTest::newRow(host[0] == '\0' ? "(empty)" : host) << QString::fromLatin1(host) << usual;
    }
    void hostsOfALoginAreChecked()
    {
        QFETCH(const QString, host);
        QFETCH(const QString, base);
        QCOMPARE(RestSettings().baseAt(host), QUrl(base));
    }

    void loginLeadsFromAnAddressOfAPersonsOwnToNoOther_data()
    {
        QTest::addColumn<QString>("host");
        for (const char *host : {"subtitles.example", "subtitles.example:8443", "api.opensubtitles.com",
                                 "vip-api.opensubtitles.com", "127.0.0.1"})
            QTest::newRow(host) << QString::fromLatin1(host);
    }
    void loginLeadsFromAnAddressOfAPersonsOwnToNoOther()
    {
        QFETCH(const QString, host);
        RestAccess access;
        access.base = QUrl(u"https://subtitles.example:8443/api/v1"_s);
        QCOMPARE(access.baseAt(host), access.base);
        QVERIFY(access.apiHosts().accepts(access.base));
        QVERIFY(!access.apiHosts().accepts(RestAccess::standardBase()));
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<RestFixture> m_fixture;
};

PLOVENDIX_TEST(RestHostsTest)
#include "RestHostsTest.moc"
