#include <base/PropertyList.h>
#include <tests/support/Sandbox.h>

#include <tests/support/TestMain.h>

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
    "<dict><key>text</key><string>“%1$@” &lt;b&gt; 映画</string><key>empty</key><string></string>"
    "<key>spaces</key><string> x </string><key>number</key><integer>42</integer>"
    "<key>real</key><real>1.5</real><key>yes</key><true/><key>no</key><false/></dict>";
const QByteArray Small = "<dict><key>a</key><true/></dict>";
} // namespace

class PropertyListTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKindOfValueIsRead()
    {
        const auto list = readPropertyList(m_sandbox.writeFile(u"list.plist"_s, xml(Everything)));
        QVERIFY(list);
        QCOMPARE(*list, (QVariantMap{{u"text"_s, u"“%1$@” <b> 映画"_s},
                                     {u"empty"_s, u""_s},
                                     {u"spaces"_s, u" x "_s},
                                     {u"number"_s, 42LL},
                                     {u"real"_s, 1.5},
                                     {u"yes"_s, true},
                                     {u"no"_s, false}}));
    }
    void missingFileIsAnError()
    {
        const auto list = readPropertyList(m_sandbox.path(u"nothing.plist"_s));
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
        QTest::newRow("nothing inside") << xml("");
        QTest::newRow("a text") << xml("<string>a</string>");
        QTest::newRow("a list") << xml("<array><true/></array>");
        QTest::newRow("two values") << xml(Small + Small);
        QTest::newRow("a list inside") << xml("<dict><key>a</key><array/></dict>");
        QTest::newRow("a dictionary inside") << xml("<dict><key>a</key>" + Small + "</dict>");
        QTest::newRow("a key without a value") << xml("<dict><key>a</key></dict>");
        QTest::newRow("a value without a key") << xml("<dict><string>a</string></dict>");
        QTest::newRow("a list as a key") << xml("<dict><key><array/></key><true/></dict>");
        QTest::newRow("a number of letters") << xml("<dict><key>a</key><integer>abc</integer></dict>");
        QTest::newRow("deep nesting") << xml(QByteArray("<dict><key>a</key>").repeated(300'000));
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
        QVERIFY(!readPropertyList(m_sandbox.writeFile(u"large.plist"_s, xml(Small) + filling)));
        QVERIFY(parsePropertyList(xml(Small) + filling.left(1024)));
    }
    void declaredEntitiesAreRefused()
    {
        const QByteArray before = "<!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;\">]>";
        QVERIFY(!parsePropertyList(before + "<plist><dict><key>a</key><string>&b;</string></dict></plist>"));
        QVERIFY(!parsePropertyList(
            "<!DOCTYPE plist [<!ENTITY f SYSTEM "
            "\"file:///etc/hostname\">]><plist><dict><key>a</key><string>&f;</string></dict></plist>"));
        QVERIFY(!parsePropertyList(before + "<plist>" + Small + "</plist>"));

        QByteArray doublings = "<!ENTITY % a0 \"<!-- x -->\">";
        for (int index = 1; index < 40; ++index) {
            const QByteArray one = "%a" + QByteArray::number(index - 1) + ";";
            doublings += "<!ENTITY % a" + QByteArray::number(index) + " \"" + one + one + "\">";
        }
        QVERIFY(!parsePropertyList("<!DOCTYPE plist [" + doublings + "%a39;]><plist>" + Small + "</plist>"));
    }
    void markupOutsideTheElementsIsHarmless()
    {
        const QByteArray content = "<!-- </dict> --><dict><!-- <array> --><key>a</key><?x </dict> ?>"
                                   "<string><![CDATA[</dict>]]></string></dict>";
        const auto list = parsePropertyList(xml(content));
        QVERIFY(list);
        QCOMPARE(list->value(u"a"_s), QVariant(u"</dict>"_s));
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
