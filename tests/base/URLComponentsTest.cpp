#include <base/URLComponents.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(URLComponents)

class URLComponentsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void partsOfAURL()
    {
        const auto parts =
            URLComponents::fromURL(QUrl(u"plovendix://search/some%20path?docid=42&sender=tessaly3"_s));
        QVERIFY(parts);
        QCOMPARE(parts->scheme, u"plovendix"_s);
        QCOMPARE(parts->host, u"search"_s);
        QCOMPARE(parts->path, u"/some path"_s);
        const QList<URLQueryItem> expected{{u"docid"_s, u"42"_s}, {u"sender"_s, u"tessaly3"_s}};
        QCOMPARE(parts->queryItems, expected);
    }

    void queryItemsOfAURL_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QList<URLQueryItem>>("items");
        using Items = QList<URLQueryItem>;
        QTest::newRow("no query") << u""_s << Items{};
        QTest::newRow("empty query") << u"?"_s << Items{};
        QTest::newRow("one") << u"?a=1"_s << Items{{u"a"_s, u"1"_s}};
        QTest::newRow("several, in order")
            << u"?a=1&b&c=&a=2"_s << Items{{u"a"_s, u"1"_s}, {u"b"_s, {}}, {u"c"_s, u""_s}, {u"a"_s, u"2"_s}};
        QTest::newRow("only the first sign parts") << u"?a=b=c"_s << Items{{u"a"_s, u"b=c"_s}};
        QTest::newRow("plus is a plus") << u"?a=1+2"_s << Items{{u"a"_s, u"1+2"_s}};
        QTest::newRow("escaped delimiters") << u"?a=1%262%3D3%2B4%23"_s << Items{{u"a"_s, u"1&2=3+4#"_s}};
        QTest::newRow("escaped name") << u"?a%26b=1"_s << Items{{u"a&b"_s, u"1"_s}};
        QTest::newRow("letters") << u"?a=F%C3%BC%C3%9Fe"_s << Items{{u"a"_s, u"Füße"_s}};
        QTest::newRow("no name") << u"?=1"_s << Items{{u""_s, u"1"_s}};
        QTest::newRow("empty item") << u"?a=1&&b=2"_s
                                    << Items{{u"a"_s, u"1"_s}, {u""_s, {}}, {u"b"_s, u"2"_s}};
        QTest::newRow("semicolon parts nothing") << u"?a=1;b=2"_s << Items{{u"a"_s, u"1;b=2"_s}};
        QTest::newRow("fragment is no value") << u"?a=1#b=2"_s << Items{{u"a"_s, u"1"_s}};
    }

    void queryItemsOfAURL()
    {
        QFETCH(QString, query);
        QFETCH(QList<URLQueryItem>, items);
        const auto parts = URLComponents::fromURL(QUrl(u"x-player://host"_s + query));
        QVERIFY(parts);
        QCOMPARE(parts->queryItems, items);
    }

    void invalidURLHasNoParts()
    {
        QVERIFY(!URLComponents::fromURL(QUrl()));
        QVERIFY(!URLComponents::fromURL(QUrl(u"http://[::1"_s, QUrl::StrictMode)));
    }

    void firstValueOfAName_data()
    {
        QTest::addColumn<QByteArray>("query");
        QTest::addColumn<QString>("value"); // null for none
        QTest::newRow("first counts") << QByteArray("a=1&a=2") << u"1"_s;
        QTest::newRow("first has none") << QByteArray("a&a=2") << QString();
        QTest::newRow("empty") << QByteArray("a=") << u""_s;
        QTest::newRow("another case") << QByteArray("A=1") << QString();
        QTest::newRow("decoded once")
            << QByteArray("a=file:///a%2520b%2525.mkv") << u"file:///a%20b%25.mkv"_s;
        QTest::newRow("bytes that are no text")
            << QByteArray("a=file:///f%FCr%C3%BC%E2%82.mkv") << u"file:///f%FCrü%E2%82.mkv"_s;
    }

    void firstValueOfAName()
    {
        QFETCH(QByteArray, query);
        QFETCH(QString, value);
        const auto parts = URLComponents::fromURL(QUrl::fromEncoded("x://h?" + query));
        QCOMPARE(parts->firstValue(u"a"_s).has_value(), !value.isNull());
        QCOMPARE(parts->firstValue(u"a"_s).value_or(QString()), value);
    }

    void partsGiveAURL_data()
    {
        QTest::addColumn<URLComponents>("parts");
        QTest::addColumn<QByteArray>("url");
        const QString host = u"plovendix-file"_s;
        QTest::newRow("reply") << URLComponents{u"tessaly3"_s,
                                                host,
                                                {},
                                                {{u"filepath"_s, u"/u/A.en.srt"_s}, {u"docid"_s, u"42"_s}}}
                               << QByteArray("tessaly3://plovendix-file?filepath=/u/A.en.srt&docid=42");
        QTest::newRow("no scheme") << URLComponents{{}, host, {}, {{u"filepath"_s, u"/a"_s}}}
                                   << QByteArray("//plovendix-file?filepath=/a");
        QTest::newRow("escaped value") << URLComponents{u"x"_s, u"h"_s, {}, {{u"v"_s, u"&=+#% \"<>"_s}}}
                                       << QByteArray("x://h?v=%26%3D%2B%23%25%20%22%3C%3E");
        QTest::newRow("escaped name")
            << URLComponents{u"x"_s, u"h"_s, {}, {{u"a&b="_s, u"1"_s}}} << QByteArray("x://h?a%26b%3D=1");
        QTest::newRow("no value and an empty one")
            << URLComponents{u"x"_s, u"h"_s, {}, {{u"a"_s, {}}, {u"b"_s, u""_s}}} << QByteArray("x://h?a&b=");
        QTest::newRow("path") << URLComponents{u"x"_s, u"::1"_s, u"/a b?c#d%e"_s, {}}
                              << QByteArray("x://[::1]/a%20b%3Fc%23d%25e");
    }

    void partsGiveAURL()
    {
        QFETCH(URLComponents, parts);
        QFETCH(QByteArray, url);
        QCOMPARE(parts.url().value_or(QUrl()).toEncoded(), url);
    }

    void valueSurvivesTheWay()
    {
        for (const char *text : {"a&b", "a=b", "a+b", "a#b", "100%", "%41", "a b", "Füße 映画 🎬", "a/b?c",
                                 "\"<>\\^`{|}[]", "", "a;b,c", "line\nbreak", "'$!*()@:"}) {
            const QString value = QString::fromUtf8(text);
            const URLComponents parts{u"x"_s, u"h"_s, {}, {{u"filepath"_s, value}, {u"docid"_s, value}}};
            const QByteArray url = parts.url().value_or(QUrl()).toEncoded();
            const auto readBack = URLComponents::fromURL(QUrl::fromEncoded(url, QUrl::StrictMode));
            QVERIFY2(readBack && readBack->queryItems == parts.queryItems, text);
        }
    }

    void impossiblePartsGiveNoURL()
    {
        for (const QString &scheme : {u"3tessaly"_s, u"tes saly"_s, u"tessaly:"_s, u"a/b"_s, u"tässaly"_s,
                                      u"tessaly\n"_s, u"tessaly_3"_s})
            QVERIFY2(!(URLComponents{scheme, u"h"_s, {}, {}}.url()), qPrintable(scheme));
        for (const QString &host : {u"a b"_s, u"a/b"_s})
            QVERIFY2(!(URLComponents{u"x"_s, host, {}, {}}.url()), qPrintable(host));
        QVERIFY(!(URLComponents{u"x"_s, u"h"_s, u"path"_s, {}}.url()));
        QVERIFY(!URLComponents().url());
    }

    void textThatSpellsAURL()
    {
        QCOMPARE(parseURLString(u"file:///home/u/A%20%23.mkv"_s).value().path(QUrl::FullyDecoded),
                 u"/home/u/A #.mkv"_s);
        QCOMPARE(parseURLString(u"https://example.org/a?b=c#d"_s).value().toEncoded(),
                 QByteArray("https://example.org/a?b=c#d"));
        QCOMPARE(parseURLString(u"/home/u/A.mkv"_s).value().path(), u"/home/u/A.mkv"_s);
        QCOMPARE(parseURLString(u"file:///Füße.mkv"_s).value().path(), u"/Füße.mkv"_s);
    }

    void textThatSpellsNoURL()
    {
        for (const char *text :
             {"", "/home/u/A film.mkv", "100%", "a%2", "a%zz", "http://[::1", "http://a b/", "http://h:port/",
              "a|b", "a<b", "a\"b", "a{b}", "a\\b", "a^b", "a`b", "a\nb", " file:///a", "file:///a "})
            QVERIFY2(!parseURLString(QString::fromUtf8(text)), text);
    }
};

PLOVENDIX_PLAIN_TEST(URLComponentsTest)
#include "URLComponentsTest.moc"
