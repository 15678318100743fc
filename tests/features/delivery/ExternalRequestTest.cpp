#include <base/FileManager.h>
#include <features/delivery/ExternalRequest.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString Film = u"fileurl=file:///Users/u/Movies/A.mkv"_s;

/// The request that a text makes; none when it makes none.
std::optional<ExternalRequest> requestIn(const QString &text)
{
    const auto read = readExternalRequest(text);
    return read ? *read : std::nullopt;
}
} // namespace

class ExternalRequestTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void requesterIsKnownWhenBothItemsAreThere_data()
    {
        QTest::addColumn<QString>("items");
        QTest::addColumn<std::optional<ExternalRequestInfo>>("expected");
        using Info = std::optional<ExternalRequestInfo>;
        const auto row = [](const char *name, const QString &items, const Info &expected) {
            QTest::newRow(name) << items << expected;
        };
        row("both", u"docid=42&sender=tessaly3"_s, Info({u"tessaly3"_s, u"42"_s, u"Tessaly"_s}));
        row("stranger", u"docid=42&sender=tessaly"_s, Info({u"tessaly"_s, u"42"_s, u"Unknown"_s}));
        row("only a document", u"docid=42"_s, Info());
        row("only a sender", u"sender=tessaly3"_s, Info());
        row("document without value", u"docid&sender=tessaly3"_s, Info());
        row("sender without value", u"docid=42&sender"_s, Info());
        row("empty document", u"docid=&sender=tessaly3"_s, Info({u"tessaly3"_s, u""_s, u"Tessaly"_s}));
        row("empty sender", u"docid=42&sender="_s, Info({u""_s, u"42"_s, u"Unknown"_s}));
        row("first of two", u"docid=1&docid=2&sender=glimmet&sender=tessaly3"_s,
            Info({u"glimmet"_s, u"1"_s, u"Glimmet"_s}));
        row("other case of the names", u"DocID=42&Sender=tessaly3"_s, Info());
        row("decoded once", u"docid=a%2520b%26c&sender=tessaly%33"_s,
            Info({u"tessaly3"_s, u"a%20b&c"_s, u"Tessaly"_s}));
    }
    void requesterIsKnownWhenBothItemsAreThere()
    {
        QFETCH(QString, items);
        QFETCH(std::optional<ExternalRequestInfo>, expected);
        const auto request = requestIn(u"plovendix://request?"_s + Film + u"&"_s + items);
        QVERIFY(request);
        QCOMPARE(request->requestInfo, expected);
    }

    void videoIsAURLOrElseAPath_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QUrl>("expected");
        const auto path = [](const QByteArray &bytes) { return FileManager::urlFromFileSystemPath(bytes); };
        const QByteArray here = QDir::currentPath().toUtf8();
        QTest::newRow("file") << u"file:///a/b.mkv"_s << QUrl(u"file:///a/b.mkv"_s);
        QTest::newRow("first of two") << u"file:///a/b.mkv&fileurl=file:///b"_s << QUrl(u"file:///a/b.mkv"_s);
        QTest::newRow("escaped twice")
            << u"file:///a/my%2520film.mkv"_s << QUrl(u"file:///a/my%20film.mkv"_s);
        QTest::newRow("escaped whole") << u"file%3A%2F%2F%2Fa%2Fb.mkv"_s << QUrl(u"file:///a/b.mkv"_s);
        QTest::newRow("byte that is not UTF-8")
            << u"file:///a/caf%25E9.mkv"_s << QUrl::fromEncoded("file:///a/caf%E9.mkv");
        QTest::newRow("web") << u"https://example.org/b.mkv"_s << QUrl(u"https://example.org/b.mkv"_s);
        QTest::newRow("plus") << u"file:///a+b.mkv"_s << QUrl(u"file:///a+b.mkv"_s);
        // A path without any sign that URLs forbid spells a URL too, one without a scheme.
        QTest::newRow("path that is a URL") << u"/a/b.mkv"_s << QUrl(u"/a/b.mkv"_s);
        QTest::newRow("path with a space") << u"/a/my%20film.mkv"_s << path("/a/my film.mkv");
        QTest::newRow("path with a percent sign") << u"/a/100%25.mkv"_s << path("/a/100%.mkv");
        QTest::newRow("path decoded once") << u"/a/my%20film%252F.mkv"_s << path("/a/my film%2F.mkv");
        QTest::newRow("relative path") << u"my%20film.mkv"_s << path(here + "/my film.mkv");
        QTest::newRow("file URL with a space")
            << u"file:///a/my%20film.mkv"_s << path(here + "/file:///a/my film.mkv");
        QTest::newRow("empty") << u""_s << QUrl::fromLocalFile(QDir::currentPath());
        const QString megabyte = u"file:///"_s + QString(1024 * 1024, u'a');
        QTest::newRow("a megabyte") << megabyte << QUrl(megabyte);
    }
    void videoIsAURLOrElseAPath()
    {
        QFETCH(QString, value);
        QFETCH(QUrl, expected);
        const auto request = requestIn(u"plovendix://request?fileurl="_s + value);
        QVERIFY(request);
        QCOMPARE(request->url.toEncoded(), expected.toEncoded());
    }

    void bytesThatAreNotUTF8AreReplaced()
    {
        const auto request =
            requestIn(u"plovendix://request?fileurl=/a/%FF%C3.mkv&docid=%FE&sender=%C0%AF"_s);
        QVERIFY(request);
        const QString path = request->url.path(QUrl::FullyDecoded);
        QVERIFY(path.startsWith(u"/a/"_s) && path.endsWith(u".mkv"_s));
        QVERIFY(request->requestInfo);
        QCOMPARE(request->requestInfo->name, u"Unknown"_s);
    }

    void anySchemeHostAndPathWillDo_data()
    {
        QTest::addColumn<QString>("prefix");
        for (const QString &prefix : {u"plovendix:"_s, u"PLOVENDIX://h/p"_s, u"other://a.b:99/c/d"_s,
                                      u"https://user@example.org"_s, u"file:///x"_s, u"/just/a/path"_s})
            QTest::newRow(qPrintable(prefix)) << prefix;
    }
    void anySchemeHostAndPathWillDo()
    {
        QFETCH(QString, prefix);
        const auto request = requestIn(prefix + u"?"_s + Film + u"#fragment"_s);
        QVERIFY(request);
        QCOMPARE(request->url, QUrl(u"file:///Users/u/Movies/A.mkv"_s));
    }

    void textsThatAreNoURLsAreIgnored_data()
    {
        QTest::addColumn<std::optional<QString>>("text");
        using Text = std::optional<QString>;
        QTest::newRow("nothing") << Text();
        QTest::newRow("empty") << Text(u""_s);
        QTest::newRow("words") << Text(u"not a url ?"_s + Film);
        QTest::newRow("broken escape") << Text(u"plovendix://x?fileurl=%zz"_s);
        QTest::newRow("broken host") << Text(u"plovendix://[x?"_s + Film);
        QTest::newRow("line break") << Text(u"plovendix://x\n?"_s + Film);
        QTest::newRow("NUL") << Text(u"plovendix://x\0?"_s + Film);
    }
    void textsThatAreNoURLsAreIgnored()
    {
        QFETCH(std::optional<QString>, text);
        const auto request = readExternalRequest(text);
        QVERIFY(request);
        QCOMPARE(*request, std::nullopt);
    }

    void missingVideoIsAnErrorWithTheWholeRequest_data()
    {
        QTest::addColumn<QString>("url");
        QTest::newRow("no query") << u"plovendix://request"_s;
        QTest::newRow("other items") << u"plovendix://request?docid=42&sender=tessaly3"_s;
        QTest::newRow("other case") << u"plovendix://request?FileURL=file:///a"_s;
        QTest::newRow("longer name") << u"plovendix://request?fileurls=file:///a"_s;
        QTest::newRow("first without value") << u"plovendix://request?fileurl&fileurl=file:///a"_s;
        QTest::newRow("in the fragment") << u"plovendix://request#?fileurl=file:///a"_s;
        QTest::newRow("placeholder in it") << u"plovendix://request/%25@%2525@"_s;
        QTest::newRow("a megabyte") << u"plovendix://request?"_s + u"%41&"_s.repeated(256 * 1024);
    }
    void missingVideoIsAnErrorWithTheWholeRequest()
    {
        QFETCH(QString, url);
        const auto request = readExternalRequest(url);
        QVERIFY(!request);
        QCOMPARE(request.error().domain, QString());
        QCOMPARE(request.error().code, 0);
        QCOMPARE(request.error().localizedDescription,
                 u"Cannot create URL from "_s + url + u". Contact support@quorvane.example"_s);
    }
};

PLOVENDIX_TEST(ExternalRequestTest)
#include "ExternalRequestTest.moc"
