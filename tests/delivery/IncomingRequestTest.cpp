#include <delivery/FileSearching.h>
#include <delivery/IncomingRequestHandler.h>
#include <support/Sandbox.h>

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// The application as a request sees it; notes what it is told, in order.
class FakeHost final : public IncomingRequestHost, public FileSearching
{
public:
    bool windowOpen = true;
    bool contentReady = true;
    QStringList events;
    QList<ExternalRequest> searched;
    QList<ExternalRequest> parked;
    QList<Error> errors;

    bool bringFirstWindowForward() override
    {
        events += u"front"_s;
        return windowOpen;
    }
    FileSearching *firstWindowContent() override
    {
        events += u"content"_s;
        return contentReady ? this : nullptr;
    }
    void park(const ExternalRequest &request) override
    {
        events += u"park"_s;
        parked += request;
    }
    void presentError(const Error &error) override
    {
        events += u"error"_s;
        errors += error;
    }
    void searchForFile(const QUrl &url, const std::optional<ExternalRequestInfo> &requestInfo) override
    {
        events += u"search"_s;
        searched += ExternalRequest{url, requestInfo};
    }
};

const QString Film = u"fileurl=file:///Users/u/Movies/A.mkv"_s;
const QString Example = u"plovendix://request?"_s + Film + u"&docid=42&sender=tessaly3"_s;
} // namespace

class IncomingRequestTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;

    /// Handles one request and gives the search it started.
    static std::optional<ExternalRequest> searchFor(const QString &text)
    {
        FakeHost host;
        IncomingRequestHandler(host).handle(text);
        return host.searched.size() == 1 ? std::optional(host.searched.first()) : std::nullopt;
    }

private Q_SLOTS:
    void init() { m_sandbox.clearPrintedLines(); }

    void requestBringsTheWindowForwardAndSearchesAtOnce()
    {
        FakeHost host;
        IncomingRequestHandler(host).handle(Example);
        QCOMPARE(host.events, u"front content search"_s.split(u' '));
        QCOMPARE(host.searched.first().url, QUrl(u"file:///Users/u/Movies/A.mkv"_s));
        QCOMPARE(host.searched.first().requestInfo,
                 (ExternalRequestInfo{u"tessaly3"_s, u"42"_s, u"Tessaly"_s}));
        QCOMPARE(m_sandbox.printedLines(), QStringList());
    }

    void whatIsNoURLIsIgnored_data()
    {
        QTest::addColumn<std::optional<QString>>("text");
        using Text = std::optional<QString>;
        QTest::newRow("nothing") << Text();
        QTest::newRow("empty") << Text(u""_s);
        QTest::newRow("words") << Text(u"not a url ?"_s + Film);
        QTest::newRow("broken escape") << Text(u"plovendix://x?fileurl=%zz"_s);
        QTest::newRow("broken host") << Text(u"plovendix://[x?"_s + Film);
        QTest::newRow("bad port") << Text(u"plovendix://x:port?"_s + Film);
        QTest::newRow("bad scheme") << Text(u"1:/x y?"_s + Film);
        QTest::newRow("line break") << Text(u"plovendix://x\n?"_s + Film);
        QTest::newRow("NUL") << Text(u"plovendix://x\0?"_s + Film);
    }
    void whatIsNoURLIsIgnored()
    {
        QFETCH(std::optional<QString>, text);
        FakeHost host;
        IncomingRequestHandler(host).handle(text);
        QCOMPARE(host.events, QStringList());
        QCOMPARE(m_sandbox.printedLines(), QStringList());
    }

    void anySchemeHostAndPathWillDo_data()
    {
        QTest::addColumn<QString>("prefix");
        for (const QString &prefix :
             {u"plovendix://"_s, u"plovendix:"_s, u"PLOVENDIX://h/p"_s, u"other://a.b:99/c/d"_s,
              u"https://user@example.org"_s, u"file:///x"_s, u"/just/a/path"_s})
            QTest::newRow(qPrintable(prefix)) << prefix;
    }
    void anySchemeHostAndPathWillDo()
    {
        QFETCH(QString, prefix);
        const auto search = searchFor(prefix + u"?"_s + Film + u"#fragment"_s);
        QVERIFY(search);
        QCOMPARE(search->url, QUrl(u"file:///Users/u/Movies/A.mkv"_s));
    }

    void missingVideoIsAnErrorWithTheWholeRequest_data()
    {
        QTest::addColumn<QString>("url");
        QTest::newRow("no query") << u"plovendix://request"_s;
        QTest::newRow("empty query") << u"plovendix://request?"_s;
        QTest::newRow("other items") << u"plovendix://request?docid=42&sender=tessaly3"_s;
        QTest::newRow("other case") << u"plovendix://request?FileURL=file:///a"_s;
        QTest::newRow("longer name") << u"plovendix://request?fileurls=file:///a"_s;
        QTest::newRow("no value") << u"plovendix://request?fileurl&docid=42"_s;
        QTest::newRow("first without value") << u"plovendix://request?fileurl&fileurl=file:///a"_s;
        QTest::newRow("in the fragment") << u"plovendix://request#?fileurl=file:///a"_s;
        QTest::newRow("in the path") << u"plovendix://request/fileurl=file:///a"_s;
        QTest::newRow("placeholder in it") << u"plovendix://request/%25@%2525@"_s;
        QTest::newRow("only separators") << u"plovendix://request?&&==&&"_s;
    }
    void missingVideoIsAnErrorWithTheWholeRequest()
    {
        QFETCH(QString, url);
        FakeHost host;
        IncomingRequestHandler(host).handle(url);
        QCOMPARE(host.events, QStringList{u"error"_s});
        QCOMPARE(host.errors.first().domain, QString());
        QCOMPARE(host.errors.first().code, 0);
        QCOMPARE(host.errors.first().localizedDescription,
                 u"Cannot create URL from "_s + url + u". Contact support@quorvane.example"_s);
    }

    void emptyVideoIsAnErrorWithItsValue()
    {
        FakeHost host;
        IncomingRequestHandler(host).handle(u"plovendix://request?fileurl=&docid=42&sender=tessaly3"_s);
        QCOMPARE(host.events, QStringList{u"error"_s});
        QCOMPARE(host.errors.first().domain, QString());
        QCOMPARE(host.errors.first().code, 0);
        QCOMPARE(host.errors.first().localizedDescription, u"Cannot create URL from "_s);
    }

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

    void withoutWindowTheRequestIsDroppedWithALine()
    {
        FakeHost host;
        host.windowOpen = false;
        IncomingRequestHandler(host).handle(Example);
        QCOMPARE(host.events, QStringList{u"front"_s});
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"No window open?"_s});
    }

    void withoutReadyContentTheRequestIsParked()
    {
        FakeHost host;
        host.contentReady = false;
        IncomingRequestHandler handler(host);
        handler.handle(Example);
        handler.handle(u"plovendix://request?fileurl=file:///later.mkv&docid=7"_s);
        QCOMPARE(host.events, u"front content park front content park"_s.split(u' '));
        QCOMPARE(host.parked.first().url, QUrl(u"file:///Users/u/Movies/A.mkv"_s));
        QCOMPARE(host.parked.first().requestInfo,
                 (ExternalRequestInfo{u"tessaly3"_s, u"42"_s, u"Tessaly"_s}));
        QCOMPARE(host.parked.last(), (ExternalRequest{QUrl(u"file:///later.mkv"_s), std::nullopt}));
        QCOMPARE(m_sandbox.printedLines(), QStringList());
    }

    void errorsComeBeforeTheWindowIsTouched()
    {
        FakeHost host;
        host.windowOpen = false;
        IncomingRequestHandler(host).handle(u"plovendix://request?docid=1"_s);
        QCOMPARE(host.events, QStringList{u"error"_s});
        QCOMPARE(m_sandbox.printedLines(), QStringList());
    }

    void megabyteOfAVideoIsTaken()
    {
        const QString path = u"/"_s + QString(1024 * 1024, u'a');
        const auto search = searchFor(u"plovendix://request?fileurl=file://"_s + path);
        QVERIFY(search);
        QCOMPARE(search->url.path(), path);
    }

    void megabyteOfItemsIsTaken()
    {
        const auto search = searchFor(u"plovendix://request?"_s + u"x=y&"_s.repeated(256 * 1024) + Film);
        QVERIFY(search);
        QCOMPARE(search->url, QUrl(u"file:///Users/u/Movies/A.mkv"_s));
    }

    void megabyteWithoutAVideoIsNamedWhole()
    {
        FakeHost host;
        const QString url = u"plovendix://request?"_s + u"%41&"_s.repeated(256 * 1024);
        IncomingRequestHandler(host).handle(url);
        QCOMPARE(host.errors.size(), 1);
        QVERIFY(host.errors.first().localizedDescription.contains(url));
    }

    void bytesThatAreNotUTF8NeitherCrashNorLeaveTheName()
    {
        FakeHost host;
        IncomingRequestHandler(host).handle(
            u"plovendix://request?fileurl=/a/%FF%C3.mkv&docid=%FE&sender=%C0%AF"_s);
        QCOMPARE(host.searched.size(), 1);
        QVERIFY(host.searched.first().url.path(QUrl::FullyDecoded).startsWith(u"/a/"_s));
        QVERIFY(host.searched.first().url.path(QUrl::FullyDecoded).endsWith(u".mkv"_s));
        QVERIFY(host.searched.first().requestInfo);
        QCOMPARE(host.searched.first().requestInfo->name, u"Unknown"_s);
    }
};

QTEST_GUILESS_MAIN(IncomingRequestTest)
#include "IncomingRequestTest.moc"
