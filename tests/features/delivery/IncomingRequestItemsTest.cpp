#include "FakeHost.h"

#include <tests/support/TestMain.h>

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString Film = u"fileurl=file:///Users/u/Movies/A.mkv"_s;
} // namespace

/// What the items of a request's query say.
class IncomingRequestItemsTest final : public QObject
{
    Q_OBJECT

private:
    /// Handles one request and gives the search it started.
    static std::optional<ExternalRequest> searchFor(const QString &text)
    {
        FakeHost host;
        IncomingRequestHandler(host).handle(text);
        return host.searched.size() == 1 ? std::optional(host.searched.first()) : std::nullopt;
    }

private Q_SLOTS:
    void requesterIsKnownWhenBothItemsAreThere_data()
    {
        QTest::addColumn<QString>("items");
        QTest::addColumn<std::optional<ExternalRequestInfo>>("expected");
        using Info = std::optional<ExternalRequestInfo>;
        const auto row = [](const char *name, const QString &items, const Info &expected) {
            QTest::newRow(name) << items << expected;
        };
        row("Tessaly", u"docid=42&sender=tessaly3"_s, Info({u"tessaly3"_s, u"42"_s, u"Tessaly"_s}));
        row("Verbrook", u"sender=verbrook3&docid=x"_s, Info({u"verbrook3"_s, u"x"_s, u"Verbrook"_s}));
        row("Glimmet", u"docid=1&sender=glimmet"_s, Info({u"glimmet"_s, u"1"_s, u"Glimmet"_s}));
        row("stranger", u"docid=42&sender=tessaly"_s, Info({u"tessaly"_s, u"42"_s, u"Unknown"_s}));
        row("web scheme", u"docid=42&sender=https"_s, Info({u"https"_s, u"42"_s, u"Unknown"_s}));
        row("other case", u"docid=42&sender=Tessaly3"_s, Info({u"Tessaly3"_s, u"42"_s, u"Unknown"_s}));
        row("only a document", u"docid=42"_s, Info());
        row("only a sender", u"sender=tessaly3"_s, Info());
        row("neither", u"x=y"_s, Info());
        row("document without value", u"docid&sender=tessaly3"_s, Info());
        row("sender without value", u"docid=42&sender"_s, Info());
        row("empty document", u"docid=&sender=tessaly3"_s, Info({u"tessaly3"_s, u""_s, u"Tessaly"_s}));
        row("empty sender", u"docid=42&sender="_s, Info({u""_s, u"42"_s, u"Unknown"_s}));
        row("first of two", u"docid=1&docid=2&sender=glimmet&sender=tessaly3"_s,
            Info({u"glimmet"_s, u"1"_s, u"Glimmet"_s}));
        row("first without value", u"docid&docid=2&sender=glimmet"_s, Info());
        row("other case of the names", u"DocID=42&Sender=tessaly3"_s, Info());
        row("decoded once", u"docid=a%2520b%26c&sender=tessaly%33"_s,
            Info({u"tessaly3"_s, u"a%20b&c"_s, u"Tessaly"_s}));
        row("plus is a plus", u"docid=1+1&sender=tessaly3"_s, Info({u"tessaly3"_s, u"1+1"_s, u"Tessaly"_s}));
        row("equals in the value", u"docid=a=b&sender=tessaly3"_s,
            Info({u"tessaly3"_s, u"a=b"_s, u"Tessaly"_s}));
    }
    void requesterIsKnownWhenBothItemsAreThere()
    {
        QFETCH(QString, items);
        QFETCH(std::optional<ExternalRequestInfo>, expected);
        const auto search = searchFor(u"plovendix://request?"_s + Film + u"&"_s + items);
        QVERIFY(search);
        QCOMPARE(search->requestInfo, expected);
    }

    void valueThatSpellsAURLIsThatURL_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QUrl>("expected");
        QTest::newRow("file") << u"file:///a/b.mkv"_s << QUrl(u"file:///a/b.mkv"_s);
        QTest::newRow("escaped twice")
            << u"file:///a/my%2520film.mkv"_s << QUrl(u"file:///a/my%20film.mkv"_s);
        QTest::newRow("escaped whole") << u"file%3A%2F%2F%2Fa%2Fb.mkv"_s << QUrl(u"file:///a/b.mkv"_s);
        QTest::newRow("byte that is not UTF-8")
            << u"file:///a/caf%25E9.mkv"_s << QUrl::fromEncoded("file:///a/caf%E9.mkv");
        QTest::newRow("web") << u"https://example.org/b.mkv"_s << QUrl(u"https://example.org/b.mkv"_s);
        QTest::newRow("with query") << u"file:///a%3Fb%26c"_s << QUrl(u"file:///a?b&c"_s);
        QTest::newRow("plus") << u"file:///a+b.mkv"_s << QUrl(u"file:///a+b.mkv"_s);
        QTest::newRow("upwards") << u"file:///a/../b.mkv"_s << QUrl(u"file:///a/../b.mkv"_s);
        // A path without any sign that URLs forbid spells a URL too, one without a scheme.
        QTest::newRow("path") << u"/a/b.mkv"_s << QUrl(u"/a/b.mkv"_s);
    }
    void valueThatSpellsAURLIsThatURL()
    {
        QFETCH(QString, value);
        QFETCH(QUrl, expected);
        const auto search = searchFor(u"plovendix://request?fileurl="_s + value);
        QVERIFY(search);
        QCOMPARE(search->url.toEncoded(), expected.toEncoded());
    }

    void anyOtherValueIsAPath_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray here = QDir::currentPath().toUtf8();
        QTest::newRow("space") << u"/a/my%20film.mkv"_s << QByteArray("/a/my film.mkv");
        QTest::newRow("percent sign") << u"/a/100%25.mkv"_s << QByteArray("/a/100%.mkv");
        QTest::newRow("decoded once") << u"/a/my%20film%252F.mkv"_s << QByteArray("/a/my film%2F.mkv");
        QTest::newRow("relative") << u"my%20film.mkv"_s << here + "/my film.mkv";
        QTest::newRow("file URL with a space")
            << u"file:///a/my%20film.mkv"_s << here + "/file:/a/my film.mkv";
    }
    void anyOtherValueIsAPath()
    {
        QFETCH(QString, value);
        QFETCH(QByteArray, expected);
        const auto search = searchFor(u"plovendix://request?fileurl="_s + value);
        QVERIFY(search);
        QVERIFY(search->url.isLocalFile());
        QCOMPARE(QDir::cleanPath(search->url.toLocalFile()), QString::fromUtf8(expected));
    }

    void firstVideoCounts()
    {
        const auto search = searchFor(u"plovendix://request?fileurl=file:///a&fileurl=file:///b"_s);
        QVERIFY(search);
        QCOMPARE(search->url, QUrl(u"file:///a"_s));
    }
};

PLOVENDIX_TEST(IncomingRequestItemsTest)
#include "IncomingRequestItemsTest.moc"
