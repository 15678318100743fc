#include <sources/online/RestURL.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class RestURLTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void queriesAreCanonical_data()
    {
        QTest::addColumn<RestURL::Parameters>("parameters");
        QTest::addColumn<QByteArray>("query");
        const auto row = [](const char *query, const RestURL::Parameters &parameters) {
            QTest::newRow(query) << parameters << QByteArray(query);
        };
        row("languages=en%2Cpt-br&moviehash=8e245d9679d31e12&query=paper+lighthouse+2019",
            {{u"query"_s, u"Paper Lighthouse 2019"_s},
             {u"moviehash"_s, u"8E245D9679D31E12"_s},
             {u"languages"_s, u"en,pt-br"_s}});
        row("query=one+two", {{u"query"_s, u"  One \n two "_s}, {u"languages"_s, QString()}});
        row("query=a-b_c.d~e%2Bf%26g%3Dh%25i%23", {{u"query"_s, u"a-b_c.d~e+f&g=h%i#"_s}});
        row("query=caf%C3%A9+%C3%A9t%C3%A9", {{u"query"_s, u"Café Été"_s}});
        row("query=%E4%BD%A0%F0%9F%8E%AC", {{u"query"_s, u"你🎬"_s}});
        row("query=%27%28%29%2A%21", {{u"query"_s, u"'()*!"_s}});
        row("episode_number=0&query=x&season_number=0",
            {{u"query"_s, u"x"_s}, {u"season_number"_s, u"0"_s}, {u"episode_number"_s, u"0"_s}});
        row("", {});
    }
    void queriesAreCanonical()
    {
        QFETCH(const RestURL::Parameters, parameters);
        QTEST(RestURL::query(parameters), "query");
    }

    void addressKeepsTheEncoding()
    {
        const QUrl base(u"https://api.opensubtitles.com/api/v1/"_s);
        const QUrl url =
            RestURL::address(base, u"/subtitles"_s, {{u"languages"_s, u"en,de"_s}, {u"query"_s, u"a b+c"_s}});
        QCOMPARE(url.toEncoded(),
                 "https://api.opensubtitles.com/api/v1/subtitles?languages=en%2Cde&query=a+b%2Bc");
        QCOMPARE(RestURL::address(base, u"/login"_s).toEncoded(),
                 "https://api.opensubtitles.com/api/v1/login");
    }

    void fileIdNamesTheService()
    {
        const QUrl base(u"https://a.example/api/v1"_s);
        const QString id = RestURL::fileId(base, 7);
        QCOMPARE(RestURL::fileNumber(base, id), 7);
        QCOMPARE(RestURL::fileNumber(QUrl(u"https://a.example/api/v1/"_s), id), 7);
        QVERIFY(!RestURL::fileNumber(QUrl(u"https://b.example/api/v1"_s), id));
        QVERIFY(!RestURL::fileNumber(base, id + u'x'));
        QVERIFY(!RestURL::fileNumber(base, u"7"_s));
    }
};

PLOVENDIX_PLAIN_TEST(RestURLTest)
#include "RestURLTest.moc"
