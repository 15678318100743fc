#include "FakeHost.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
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

    void invalidURLsAreIgnored_data()
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
    void invalidURLsAreIgnored()
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

    void emptyVideoIsThePathOfTheWorkingDirectory()
    {
        FakeHost host;
        IncomingRequestHandler(host).handle(u"plovendix://request?fileurl=&docid=42&sender=tessaly3"_s);
        QCOMPARE(host.events, u"front content search"_s.split(u' '));
        QCOMPARE(host.searched.first(),
                 (ExternalRequest{QUrl::fromLocalFile(QDir::currentPath()),
                                  ExternalRequestInfo{u"tessaly3"_s, u"42"_s, u"Tessaly"_s}}));
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

PLOVENDIX_TEST(IncomingRequestTest)
#include "IncomingRequestTest.moc"
