#include <base/Bundle.h>
#include <features/updates/Appcast.h>
#include <features/updates/UpdateErrors.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
QByteArray feedOf(const QByteArray &items)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<rss version=\"2.0\" "
           "xmlns:u=\"https://www.quorvane.example/xml/updates/1\"><channel><title>T</title>" +
           items + "</channel></rss>\n";
}

QByteArray repeated(const QByteArray &part, int count)
{
    return part.repeated(count);
}
} // namespace

class AppcastTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;

private Q_SLOTS:
    void itemsAreReadInTheirOrder()
    {
        const auto feed =
            Appcast::parse(feedOf("<u:date> 2030-03-01T12:00:00Z "
                                  "</u:date><u:signature>AwQF</u:signature><item><title>X</title><u:version> "
                                  "1.1 </u:version><link>\n https://a.example/1 </link>"
                                  "<description><![CDATA[<p>Grüße & mehr</p>]]></description>"
                                  "<u:signature>AAEC\n</u:signature></item>"
                                  "<item><u:version>1.2</u:version></item>"));
        QVERIFY(feed);
        QCOMPARE(feed->date, u"2030-03-01T12:00:00Z"_s);
        QCOMPARE(feed->signature, QByteArray("\3\4\5"));
        const QList<AppcastItem> *items = &feed->items;
        QCOMPARE(items->size(), 2);
        const AppcastItem &first = items->constFirst();
        QCOMPARE(first.version, u"1.1"_s);
        QCOMPARE(first.link, u"https://a.example/1"_s);
        QCOMPARE(first.notes, u"<p>Grüße & mehr</p>"_s);
        QCOMPARE(first.signature, QByteArray("\0\1\2", 3));
        QCOMPARE(items->constLast().version, u"1.2"_s);
        QVERIFY(items->constLast().signature.isEmpty());
    }

    void onlyOurNamespaceCounts()
    {
        const auto feed = Appcast::parse(
            feedOf("<item><version>1.1</version></item>"
                   "<item xmlns:v=\"https://other.example/\"><v:version>1.2</v:version></item>"
                   "<item><u:version>1.3</u:version><u:link>https://no.example/</u:link></item>"));
        QVERIFY(feed);
        QCOMPARE(feed->items.size(), 1);
        QCOMPARE(feed->items.constFirst().version, u"1.3"_s);
        QCOMPARE(feed->items.constFirst().link, QString());
    }

    void anEmptyFeedHasNoItems() { QVERIFY(Appcast::parse(feedOf(""))->items.isEmpty()); }

    void whatIsNestedIsNotRead()
    {
        const auto feed = Appcast::parse(
            feedOf("<x><item><u:version>6</u:version></item></x>"
                   "<item><x><u:version>7</u:version></x><u:version>1<b>2</b></u:version></item>"));
        QCOMPARE(feed->items.size(), 1);
        QCOMPARE(feed->items.constFirst().version, u"1"_s);
    }

    void deepNestingIsHarmless()
    {
        const QByteArray deep = repeated("<a>", 100'000) + repeated("</a>", 100'000);
        QCOMPARE(Appcast::parse(feedOf(deep + "<item><u:version>1" + "</u:version></item>"))->items.size(),
                 1);
        QCOMPARE(Appcast::parse(feedOf("<item><u:version>1" + deep + "</u:version></item>"))->items.size(),
                 1);
    }

    void itemsBeyondMeasureAreLeftOut()
    {
        QCOMPARE(
            Appcast::parse(feedOf(repeated("<item><u:version>1</u:version></item>", 2000)))->items.size(),
            500);
    }

    void malformedFeedsAreRefused_data()
    {
        QTest::addColumn<QByteArray>("feed");
        QTest::addColumn<int>("fault");
        const auto row = [](const char *name, const QByteArray &feed, UpdateFault fault) {
            QTest::newRow(name) << feed << static_cast<int>(fault);
        };
        const QByteArray whole = feedOf("<item><u:version>1.1</u:version></item>");
        row("nothing", "", UpdateFault::CutShort);
        row("cut in an item", whole.left(whole.indexOf("1.1")), UpdateFault::CutShort);
        row("cut before the last end", whole.left(whole.indexOf("</rss>")), UpdateFault::CutShort);
        row("cut in a tag", whole.left(whole.indexOf("</rss>") + 4), UpdateFault::CutShort);
        row("text", "Service moved.", UpdateFault::NoFeed);
        row("JSON", R"({"version": "1.1"})", UpdateFault::NoFeed);
        row("binary", QByteArray("\x89PNG\r\n\x1a\n\0\0", 10), UpdateFault::NoFeed);
        row("other XML", "<feed/>", UpdateFault::NoFeed);
        row("no channel", "<rss/>", UpdateFault::NoFeed);
        row("ill-formed", feedOf("<item></iten>"), UpdateFault::NoFeed);
        row("an unknown entity", feedOf("<item>&bomb;</item>"), UpdateFault::NoFeed);
        row("two documents", whole + whole, UpdateFault::NoFeed);
        row("web page", "<!DOCTYPE html><html><p>Sign in<br></html>", UpdateFault::WebPage);
        row("web page without a type", "<HTML><body>Sign in<br></HTML>", UpdateFault::WebPage);
        row("document type", "<!DOCTYPE rss><rss><channel/></rss>", UpdateFault::Declarations);
        row("entity bomb",
            "<!DOCTYPE rss [<!ENTITY a \"ha\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\">"
            "<!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\">]><rss><channel><item>&c;</item></channel></rss>",
            UpdateFault::Declarations);
        row("outer entity",
            "<!DOCTYPE rss [<!ENTITY f SYSTEM \"file:///etc/passwd\">]><rss><channel>&f;</channel></rss>",
            UpdateFault::Declarations);
        row("too large", feedOf(QByteArray(Appcast::MaxBytes, ' ')), UpdateFault::TooLarge);
    }
    void malformedFeedsAreRefused()
    {
        QFETCH(const QByteArray, feed);
        QFETCH(const int, fault);
        const auto items = Appcast::parse(feed);
        QVERIFY(!items);
        QCOMPARE(items.error().code, fault);
        QVERIFY(items.error().localizedDescription.size() > 20);
    }

    void everyCutOfAFeedIsAnError()
    {
        const QByteArray whole = feedOf("<item><u:version>1.1</u:version></item>").trimmed();
        for (qsizetype length = 0; length < whole.size(); ++length)
            QVERIFY2(!Appcast::parse(whole.left(length)), qPrintable(QString::number(length)));
        QVERIFY(Appcast::parse(whole));
    }

    void faultsAreToldApartInEveryLanguage()
    {
        QSet<QString> sentences;
        for (const QString &language : {u"en"_s, u"de"_s, u"ja"_s}) {
            Bundle::main().setPreferredLocalizations({language});
            for (int fault = 1; fault <= static_cast<int>(UpdateFault::NoHandler); ++fault)
                sentences += updateError(static_cast<UpdateFault>(fault), {}).localizedDescription;
        }
        Bundle::main().setPreferredLocalizations({});
        QCOMPARE(sentences.size(), 3 * static_cast<int>(UpdateFault::NoHandler));
    }
};

PLOVENDIX_TEST(AppcastTest)
#include "AppcastTest.moc"
