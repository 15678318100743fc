#include <sources/films/FilmSettings.h>
#include <sources/online/RestSettings.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

/// Which addresses the network's services may be asked at, and send us to.
class ServiceAddressesTest final : public QObject
{
    Q_OBJECT

    static bool lets(const HostRules &rules, const QString &url)
    {
        return rules.accepts(QUrl(url, QUrl::StrictMode));
    }

private Q_SLOTS:
    /// This machine is for a service that is on it, which is then asked for nothing elsewhere.
    void clearTextIsForThisMachineAlone_data()
    {
        QTest::addColumn<QString>("base"); // empty for the public services
        QTest::addColumn<QString>("url");
        QTest::addColumn<bool>("isAccepted");
        const auto row = [](const QString &base, const QString &url, bool isAccepted) {
            QTest::addRow("%s, asked for %s", qPrintable(base), qPrintable(url)) << base << url << isAccepted;
        };
        const QString ours = u"http://127.0.0.1:8080/api"_s;
        row(ours, u"http://127.0.0.1:8080/file"_s, true);
        row(ours, u"http://127.0.0.1:9/file"_s, true);
        row(ours, u"https://127.0.0.1/file"_s, true);
        row(ours, u"http://[::1]:9/file"_s, true);
        row(ours, u"http://localhost:9/file"_s, false); // a name that may lead anywhere
        row(ours, u"http://127.0.0.1@elsewhere.example/file"_s, false);
        row(ours, u"http://127.0.0.1.elsewhere.example/file"_s, false);
        row(ours, u"http://192.168.0.1/file"_s, false);
        row(ours, u"https://elsewhere.example/file"_s, false);
        row(ours, u"ftp://127.0.0.1/file"_s, false);
        row(ours, u"file:///file"_s, false);
        for (const QString &base : {QString(), u"https://own.example/api"_s, u"http://own.example/api"_s,
                                    u"http://localhost:8080/api"_s}) {
            row(base, u"http://127.0.0.1:8080/file"_s, false);
            row(base, u"https://127.0.0.1/file"_s, false);
            row(base, u"http://[::1]/file"_s, false);
            row(base, u"http://localhost:8080/file"_s, false);
            row(base, u"http://own.example/file"_s, false);
        }
        row(u"https://own.example/api"_s, u"https://own.example/file"_s, true);
    }
    void clearTextIsForThisMachineAlone()
    {
        QFETCH(const QString, base);
        QFETCH(const QString, url);
        QFETCH(const bool, isAccepted);
        RestAccess subtitles;
        FilmSettings films;
        if (!base.isEmpty())
            subtitles.base = films.base = QUrl(base);
        QCOMPARE(lets(subtitles.apiHosts(), url), isAccepted);
        QCOMPARE(lets(subtitles.linkHosts(), url), isAccepted);
        QCOMPARE(lets(films.apiHosts(), url), isAccepted);
        QCOMPARE(lets(films.imageHosts(), url), isAccepted);
    }

    void publicServicesHaveTheirOwnHosts()
    {
        const RestAccess subtitles;
        QVERIFY(lets(subtitles.apiHosts(), u"https://vip-api.opensubtitles.com/api/v1/subtitles"_s));
        QVERIFY(!lets(subtitles.apiHosts(), u"https://www.opensubtitles.com/download/1"_s)); // gets no key
        QVERIFY(lets(subtitles.linkHosts(), u"https://www.opensubtitles.com/download/1"_s));
        QVERIFY(!lets(subtitles.linkHosts(), u"http://www.opensubtitles.com/download/1"_s));
        QVERIFY(!lets(subtitles.linkHosts(), u"https://notopensubtitles.com/download/1"_s));
        const FilmSettings films;
        QVERIFY(lets(films.apiHosts(), u"https://api.themoviedb.org/3/configuration"_s));
        QVERIFY(!lets(films.apiHosts(), u"https://image.tmdb.org/t/p/w154/a.jpg"_s));
        QVERIFY(lets(films.imageHosts(), u"https://image.tmdb.org/t/p/w154/a.jpg"_s));
        QVERIFY(!lets(films.imageHosts(), u"http://image.tmdb.org/t/p/w154/a.jpg"_s));
        QVERIFY(!lets(films.imageHosts(), u"https://nottmdb.org/t/p/w154/a.jpg"_s));
    }
};

PLOVENDIX_TEST(ServiceAddressesTest)
#include "ServiceAddressesTest.moc"
