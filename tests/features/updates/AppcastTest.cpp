#include <features/updates/Appcast.h>
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

const QString CutShort = u"The list of versions did not arrive completely."_s;
const QString NoFeed = u"What the update server sent is no list of versions."_s;
const QString WebPage = u"Something else answered in place of the update server."_s;
const QString Declarations = u"The list of versions contains something that does not belong there"_s;
const QString TooLarge = u"The list of versions is too long"_s;
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

    void otherElementsAreSkipped_data()
    {
        QTest::addColumn<QByteArray>("items");
        QTest::addColumn<QStringList>("versions");
        const QByteArray deep = QByteArray("<a>").repeated(100'000) + QByteArray("</a>").repeated(100'000);
        const QByteArray item = "<item><u:version>1</u:version></item>";
        QTest::newRow("nothing") << QByteArray() << QStringList();
        QTest::newRow("no namespace") << QByteArray("<item><version>1.1</version></item>") << QStringList();
        QTest::newRow("another namespace")
            << QByteArray("<item xmlns:v=\"https://other.example/\"><v:version>1.2</v:version></item>")
            << QStringList();
        QTest::newRow("an item too deep") << "<x>" + item + "</x>" << QStringList();
        QTest::newRow("a version too deep")
            << QByteArray("<item><x><u:version>7</u:version></x><u:version>1<b>2</b></u:version></item>")
            << QStringList{u"1"_s};
        QTest::newRow("deep nesting") << deep + item << QStringList{u"1"_s};
        QTest::newRow("deep nesting in a version")
            << "<item><u:version>1" + deep + "</u:version></item>" << QStringList{u"1"_s};
        QTest::newRow("too many") << item.repeated(2000) << QStringList(500, u"1"_s);
    }
    void otherElementsAreSkipped()
    {
        QFETCH(const QByteArray, items);
        const auto feed = Appcast::parse(feedOf(items));
        QStringList versions;
        for (const AppcastItem &item : feed->items)
            versions += item.version;
        QTEST(versions, "versions");
    }

    void linkIsTheFeedsOwn()
    {
        const auto feed = Appcast::parse(
            feedOf("<item><u:version>1.3</u:version><u:link>https://no.example/</u:link></item>"));
        QCOMPARE(feed->items.constFirst().link, QString());
    }

    void malformedFeedsAreRefused_data()
    {
        QTest::addColumn<QByteArray>("feed");
        QTest::addColumn<QString>("sentence");
        const auto row = [](const char *name, const QByteArray &feed, const QString &sentence) {
            QTest::newRow(name) << feed << sentence;
        };
        const QByteArray whole = feedOf("<item><u:version>1.1</u:version></item>");
        row("nothing", "", CutShort);
        row("cut in an item", whole.left(whole.indexOf("1.1")), CutShort);
        row("cut before the last end", whole.left(whole.indexOf("</rss>")), CutShort);
        row("cut in a tag", whole.left(whole.indexOf("</rss>") + 4), CutShort);
        row("text", "Service moved.", NoFeed);
        row("JSON", R"({"version": "1.1"})", NoFeed);
        row("binary", QByteArray("\x89PNG\r\n\x1a\n\0\0", 10), NoFeed);
        row("other XML", "<feed/>", NoFeed);
        row("no channel", "<rss/>", NoFeed);
        row("ill-formed", feedOf("<item></iten>"), NoFeed);
        row("an unknown entity", feedOf("<item>&bomb;</item>"), NoFeed);
        row("two documents", whole + whole, NoFeed);
        row("web page", "<!DOCTYPE html><html><p>Sign in<br></html>", WebPage);
        row("web page without a type", "<HTML><body>Sign in<br></HTML>", WebPage);
        row("document type", "<!DOCTYPE rss><rss><channel/></rss>", Declarations);
        row("entity bomb",
            "<!DOCTYPE rss [<!ENTITY a \"ha\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\">"
            "<!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\">]><rss><channel><item>&c;</item></channel></rss>",
            Declarations);
        row("outer entity",
            "<!DOCTYPE rss [<!ENTITY f SYSTEM \"file:///etc/passwd\">]><rss><channel>&f;</channel></rss>",
            Declarations);
        row("too large", feedOf(QByteArray(Appcast::MaxBytes, ' ')), TooLarge);
    }
    void malformedFeedsAreRefused()
    {
        QFETCH(const QByteArray, feed);
        QFETCH(const QString, sentence);
        const auto items = Appcast::parse(feed);
        QVERIFY(!items);
        const QString said = items.error().localizedDescription;
        QVERIFY2(said.startsWith(sentence), qPrintable(said));
    }

    void everyCutOfAFeedIsAnError()
    {
        const QByteArray whole = feedOf("<item><u:version>1.1</u:version></item>").trimmed();
        for (qsizetype length = 0; length < whole.size(); ++length)
            QVERIFY2(!Appcast::parse(whole.left(length)), qPrintable(QString::number(length)));
        QVERIFY(Appcast::parse(whole));
    }
};

PLOVENDIX_TEST(AppcastTest)
#include "AppcastTest.moc"
