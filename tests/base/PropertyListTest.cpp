#include <base/PropertyList.h>
#include <tests/support/Sandbox.h>

#include <tests/support/TestMain.h>

#include <QDateTime>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
QByteArray xml(const QByteArray &content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//X//DTD PLIST 1.0//EN\" \"http://x.example/list.dtd\">\n"
           "<plist version=\"1.0\">" +
           content + "</plist>\n";
}

const QByteArray Everything =
    "<dict><key>text</key><string>Grüße &amp; mehr</string><key>number</key><integer>42</integer>"
    "<key>list</key><array><true/><false/><real>1.5</real></array>"
    "<key>date</key><date>2024-05-01T12:30:00Z</date><key>data</key><data>AAEC/w==</data></dict>";
} // namespace

class PropertyListTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKindOfValueIsRead()
    {
        const Result<QVariant> list = readPropertyList(m_sandbox.writeFile(u"list.plist"_s, xml(Everything)));
        QVERIFY(list);
        const QVariantMap map = list->toMap();
        QCOMPARE(map.size(), 5);
        QCOMPARE(map.value(u"text"_s), QVariant(u"Grüße & mehr"_s));
        QCOMPARE(map.value(u"number"_s), QVariant(42LL));
        QCOMPARE(map.value(u"list"_s).toList(), (QVariantList{true, false, 1.5}));
        QCOMPARE(map.value(u"date"_s).toDateTime(), QDateTime(QDate(2024, 5, 1), QTime(12, 30), Qt::UTC));
        QCOMPARE(map.value(u"data"_s), QVariant(QByteArray("\x00\x01\x02\xff", 4)));
    }
    void textKeepsItsLetters()
    {
        const Result<QVariant> list =
            parsePropertyList(xml("<array><string>“%1$@” &lt;b&gt; 映画</string><string></string>"
                                  "<string> x </string></array>"));
        QVERIFY(list);
        QCOMPARE(list->toList(), (QVariantList{u"“%1$@” <b> 映画"_s, u""_s, u" x "_s}));
    }
    void missingFileIsAnError()
    {
        const Result<QVariant> list = readPropertyList(m_sandbox.path(u"nothing.plist"_s));
        QVERIFY(!list);
        QCOMPARE(list.error().domain, u"PropertyList"_s);
        QVERIFY(!list.error().localizedDescription.isEmpty());
        QVERIFY(!readPropertyList(m_sandbox.path(u"."_s)));
    }
    void noPropertyListIsAnError_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArray("hello");
        QTest::newRow("old style") << QByteArray("\"Save\" = \"Sichern\";");
        QTest::newRow("another root") << QByteArray("<html><dict/></html>");
        QTest::newRow("not well-formed") << QByteArray("<plist><dict></plist>");
        QTest::newRow("unknown element") << xml("<blink/>");
        QTest::newRow("nothing inside") << xml("");
        QTest::newRow("two values") << xml("<true/><true/>");
        QTest::newRow("a key without a value") << xml("<dict><key>a</key></dict>");
        QTest::newRow("a value without a key") << xml("<dict><string>a</string></dict>");
        QTest::newRow("a list as a key") << xml("<dict><key><array/></key><true/></dict>");
        QTest::newRow("a number of letters") << xml("<integer>abc</integer>");
        QTest::newRow("no date") << xml("<date>tomorrow</date>");
        QTest::newRow("another form") << QByteArray("bplist00\xA0") + QByteArray(60, '\xff');
        QTest::newRow("zeros") << QByteArray(4096, '\0');
    }
    void noPropertyListIsAnError()
    {
        QFETCH(QByteArray, content);
        QVERIFY(!parsePropertyList(content));
    }
    void tooLargeAFileIsAnError()
    {
        const QByteArray filling(8 * 1024 * 1024, ' ');
        QVERIFY(
            !readPropertyList(m_sandbox.writeFile(u"large.plist"_s, xml("<string>x</string>") + filling)));
        QVERIFY(parsePropertyList(xml("<string>x</string>") + filling.left(1024)));
    }
    void deepNestingIsRefused_data()
    {
        QTest::addColumn<int>("depth");
        QTest::addColumn<bool>("isRead");
        QTest::newRow("shallow") << 10 << true;
        QTest::newRow("deepest") << MaxPropertyListDepth << true;
        QTest::newRow("too deep") << MaxPropertyListDepth + 1 << false;
        QTest::newRow("far too deep") << 300'000 << false;
    }
    void deepNestingIsRefused()
    {
        QFETCH(int, depth);
        QFETCH(bool, isRead);
        const QByteArray content =
            QByteArray("<array>").repeated(depth) + QByteArray("</array>").repeated(depth);
        QCOMPARE(parsePropertyList(xml(content)).hasValue(), isRead);
    }
    void declaredEntitiesAreRefused()
    {
        const QByteArray before = "<!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;\">]>";
        QVERIFY(!parsePropertyList(before + "<plist><string>&b;</string></plist>"));
        QVERIFY(!parsePropertyList("<!DOCTYPE plist [<!ENTITY f SYSTEM "
                                   "\"file:///etc/hostname\">]><plist><string>&f;</string></plist>"));
        QVERIFY(!parsePropertyList(before + "<plist><true/></plist>"));

        QByteArray doublings = "<!ENTITY % a0 \"<!-- x -->\">";
        for (int index = 1; index < 40; ++index) {
            const QByteArray one = "%a" + QByteArray::number(index - 1) + ";";
            doublings += "<!ENTITY % a" + QByteArray::number(index) + " \"" + one + one + "\">";
        }
        QVERIFY(!parsePropertyList("<!DOCTYPE plist [" + doublings + "%a39;]><plist><true/></plist>"));
    }
    void markupOutsideTheElementsIsHarmless()
    {
        const QByteArray content = "<!-- </dict> --><dict><!-- <array> --><key>a</key><?x </dict> ?>"
                                   "<string><![CDATA[</dict>]]></string></dict>";
        const Result<QVariant> list = parsePropertyList(xml(content));
        QVERIFY(list);
        QCOMPARE(list->toMap().value(u"a"_s), QVariant(u"</dict>"_s));
    }
    void everyDamagedByteIsSurvived()
    {
        const QByteArray content = xml(Everything);
        int answers = 0;
        for (qsizetype place = 0; place < content.size(); ++place) {
            for (const char byte : {'\x00', '\xff', '\x7f', '<', '\xA1'}) {
                QByteArray damaged = content;
                damaged[place] = byte;
                const Result<QVariant> list = parsePropertyList(damaged);
                answers += list || !list.error().localizedDescription.isEmpty() ? 1 : 0;
            }
        }
        QCOMPARE(answers, 5 * content.size());
    }
    void everyCutIsSurvived()
    {
        const QByteArray content = xml(Everything);
        const qsizetype end = content.lastIndexOf('>');
        for (qsizetype length = 0; length <= end; ++length)
            QVERIFY2(!parsePropertyList(content.left(length)), qPrintable(QString::number(length)));
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_TEST(PropertyListTest)
#include "PropertyListTest.moc"
