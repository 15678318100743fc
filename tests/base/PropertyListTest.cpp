#include <base/PropertyList.h>
#include <base/PropertyListGuard.h>
#include <tests/support/Sandbox.h>

#include <plist/plist.h>
#include <tests/support/TestMain.h>

#include <QDateTime>
#include <QTest>

using namespace Qt::StringLiterals;

class PropertyListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKindOfValueIsRead_data();
    void everyKindOfValueIsRead();
    void textKeepsItsLetters();
    void missingFileIsAnError();
    void noPropertyListIsAnError_data();
    void noPropertyListIsAnError();
    void tooLargeAFileIsAnError();

    void deepNestingIsRefused_data();
    void deepNestingIsRefused();
    void declaredEntitiesAreRefused();
    void markupOutsideTheElementsIsHarmless();

    void binaryCycleIsRefused();
    void binaryListThatExpandsIsRefused();
    void binaryTextThatExpandsIsRefused();
    void binaryReferencesOutsideTheFileAreRefused();
    void binaryKeyThatIsNoTextIsRefused();
    void everyDamagedByteIsSurvived_data();
    void everyDamagedByteIsSurvived();
    void everyCutIsSurvived();

private:
    Sandbox m_sandbox;
};

namespace
{
QByteArray xml(const QByteArray &content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//X//DTD PLIST 1.0//EN\" \"http://x.example/list.dtd\">\n"
           "<plist version=\"1.0\">" +
           content + "</plist>\n";
}

/// The same list in the binary form, written by the library.
QByteArray binary(const QByteArray &content)
{
    const QByteArray text = xml(content);
    plist_t root = nullptr;
    plist_from_xml(text.constData(), static_cast<std::uint32_t>(text.size()), &root);
    char *bytes = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(root, &bytes, &length);
    const QByteArray result(bytes, static_cast<qsizetype>(length));
    plist_to_bin_free(bytes);
    plist_free(root);
    return result;
}

/// A binary list of the given objects with one-byte references; the first is the root.
QByteArray handmade(const QList<QByteArray> &objects)
{
    QByteArray content = "bplist00";
    QByteArray table;
    for (const QByteArray &object : objects) {
        table += static_cast<char>(content.size() >> 8);
        table += static_cast<char>(content.size() & 0xFF);
        content += object;
    }
    const auto number = [](qsizetype value) {
        QByteArray bytes(8, '\0');
        bytes[6] = static_cast<char>(value >> 8);
        bytes[7] = static_cast<char>(value & 0xFF);
        return bytes;
    };
    const qsizetype place = content.size();
    return content + table + QByteArray(6, '\0') + '\x02' + '\x01' + number(objects.size()) + number(0) +
           number(place);
}

const QByteArray Everything =
    "<dict><key>text</key><string>Grüße &amp; mehr</string><key>number</key><integer>42</integer>"
    "<key>list</key><array><true/><false/><real>1.5</real></array>"
    "<key>date</key><date>2024-05-01T12:30:00Z</date><key>data</key><data>AAEC/w==</data></dict>";
} // namespace

void PropertyListTest::everyKindOfValueIsRead_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("XML") << xml(Everything);
    QTest::newRow("binary") << binary(Everything);
}

void PropertyListTest::everyKindOfValueIsRead()
{
    QFETCH(QByteArray, content);
    const Result<QVariant> list = readPropertyList(m_sandbox.writeFile(u"list.plist"_s, content));
    QVERIFY(list);
    const QVariantMap map = list->toMap();
    QCOMPARE(map.size(), 5);
    QCOMPARE(map.value(u"text"_s), QVariant(u"Grüße & mehr"_s));
    QCOMPARE(map.value(u"number"_s), QVariant(42LL));
    QCOMPARE(map.value(u"list"_s).toList(), (QVariantList{true, false, 1.5}));
    QCOMPARE(map.value(u"date"_s).toDateTime(), QDateTime(QDate(2024, 5, 1), QTime(12, 30), Qt::UTC));
    QCOMPARE(map.value(u"data"_s), QVariant(QByteArray("\x00\x01\x02\xff", 4)));
}

void PropertyListTest::textKeepsItsLetters()
{
    const Result<QVariant> list =
        parsePropertyList(xml("<array><string>“%1$@” &lt;b&gt; 映画</string><string></string>"
                              "<string> x </string></array>"));
    QVERIFY(list);
    QCOMPARE(list->toList(), (QVariantList{u"“%1$@” <b> 映画"_s, u""_s, u" x "_s}));
}

void PropertyListTest::missingFileIsAnError()
{
    const Result<QVariant> list = readPropertyList(m_sandbox.path(u"nothing.plist"_s));
    QVERIFY(!list);
    QCOMPARE(list.error().domain, u"PropertyList"_s);
    QVERIFY(!list.error().localizedDescription.isEmpty());
    QVERIFY(!readPropertyList(m_sandbox.path(u"."_s)));
}

void PropertyListTest::noPropertyListIsAnError_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("hello");
    QTest::newRow("old style") << QByteArray("\"Save\" = \"Sichern\";");
    QTest::newRow("another root") << QByteArray("<html><dict/></html>");
    QTest::newRow("not well-formed") << QByteArray("<plist><dict></plist>");
    QTest::newRow("unknown element") << xml("<blink/>");
    QTest::newRow("nothing inside") << xml("");
    QTest::newRow("magic alone") << QByteArray("bplist00");
    QTest::newRow("magic and junk") << QByteArray("bplist00") + QByteArray(60, '\xff');
    QTest::newRow("zeros") << QByteArray(4096, '\0');
}

void PropertyListTest::noPropertyListIsAnError()
{
    QFETCH(QByteArray, content);
    QVERIFY(!parsePropertyList(content));
}

void PropertyListTest::tooLargeAFileIsAnError()
{
    const QByteArray filling(8 * 1024 * 1024, ' ');
    QVERIFY(!readPropertyList(m_sandbox.writeFile(u"large.plist"_s, xml("<string>x</string>") + filling)));
    QVERIFY(parsePropertyList(xml("<string>x</string>") + filling.left(1024)));
}

void PropertyListTest::deepNestingIsRefused_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("shallow") << 10 << true;
    QTest::newRow("deepest") << MaxPropertyListDepth << true;
    QTest::newRow("too deep") << MaxPropertyListDepth + 1 << false;
    QTest::newRow("far too deep") << 300'000 << false;
}

void PropertyListTest::deepNestingIsRefused()
{
    QFETCH(int, depth);
    QFETCH(bool, isRead);
    const QByteArray content = QByteArray("<array>").repeated(depth) + QByteArray("</array>").repeated(depth);
    QCOMPARE(parsePropertyList(xml(content)).hasValue(), isRead);
    if (depth > 200)
        return;
    QList<QByteArray> objects;
    for (int index = 1; index < depth; ++index)
        objects += QByteArray("\xA1", 1) + static_cast<char>(index);
    objects += QByteArray("\xA0", 1);
    QCOMPARE(parsePropertyList(handmade(objects)).hasValue(), isRead);
}

void PropertyListTest::declaredEntitiesAreRefused()
{
    const QByteArray before = "<!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;\">]>";
    QVERIFY(!parsePropertyList(before + "<plist><string>&b;</string></plist>"));
    QVERIFY(!parsePropertyList(
        "<!DOCTYPE plist [<!ENTITY f SYSTEM \"file:///etc/hostname\">]><plist><string>&f;</string></plist>"));
}

void PropertyListTest::markupOutsideTheElementsIsHarmless()
{
    const QByteArray content = "<!-- </dict> --><dict><!-- <array> --><key>a</key><?x </dict> ?>"
                               "<string><![CDATA[</dict>]]></string></dict>";
    const Result<QVariant> list = parsePropertyList(xml(content));
    QVERIFY(list);
    QCOMPARE(list->toMap().value(u"a"_s), QVariant(u"</dict>"_s));
}

void PropertyListTest::binaryCycleIsRefused()
{
    QVERIFY(parsePropertyList(handmade({QByteArray("\xA1\x01", 2), QByteArray("\x09", 1)})));
    QVERIFY(!parsePropertyList(handmade({QByteArray("\xA1\x00", 2)})));
    QVERIFY(!parsePropertyList(handmade({QByteArray("\xA1\x01", 2), QByteArray("\xA1\x00", 2)})));
}

void PropertyListTest::binaryListThatExpandsIsRefused()
{
    QList<QByteArray> objects;
    for (int index = 1; index < 40; ++index)
        objects += QByteArray("\xA2", 1) + static_cast<char>(index) + static_cast<char>(index);
    objects += QByteArray("\xA0", 1);
    QVERIFY(!parsePropertyList(handmade(objects)));
    // The same with a few doublings is a list like any other.
    QVERIFY(parsePropertyList(
        handmade({QByteArray("\xA2\x01\x01", 3), QByteArray("\xA2\x02\x02", 3), QByteArray("\x09", 1)})));
}

void PropertyListTest::binaryTextThatExpandsIsRefused()
{
    // Seven lists that each name the next fourteen times; the last names one text.
    QList<QByteArray> objects;
    for (int index = 1; index < 8; ++index)
        objects += QByteArray("\xAE", 1) + QByteArray(14, static_cast<char>(index));
    objects += QByteArray("\x5E", 1) + QByteArray(14, 'x');
    QVERIFY(!parsePropertyList(handmade(objects)));
}

void PropertyListTest::binaryReferencesOutsideTheFileAreRefused()
{
    QVERIFY(!parsePropertyList(handmade({QByteArray("\xA1\x07", 2)})));
    QVERIFY(!parsePropertyList(handmade({QByteArray("\xAF\x13\xff\xff\xff\xff\xff\xff\xff\xff", 10)})));
    QVERIFY(!parsePropertyList(handmade({QByteArray("\x4F\x13\x7f\xff\xff\xff\xff\xff\xff\xff", 10)})));
}

void PropertyListTest::binaryKeyThatIsNoTextIsRefused()
{
    const QByteArray dictionary("\xD1\x01\x02", 3);
    const QByteArray text("\x51x", 2);
    QVERIFY(parsePropertyList(handmade({dictionary, QByteArray("\x52xy", 3), text})));
    QVERIFY(parsePropertyList(handmade({dictionary, QByteArray("\x61\x04\x3A", 3), text})));
    QVERIFY(!parsePropertyList(handmade({dictionary, QByteArray("\x10\x2A", 2), text})));
    QVERIFY(!parsePropertyList(handmade({dictionary, QByteArray("\xA0", 1), text})));
    QVERIFY(!parsePropertyList(handmade({dictionary, QByteArray("\x52x\0", 3), text})));
    QVERIFY(!parsePropertyList(handmade({dictionary, QByteArray("\x61\0\0", 3), text})));
}

void PropertyListTest::everyDamagedByteIsSurvived_data()
{
    everyKindOfValueIsRead_data();
}

void PropertyListTest::everyDamagedByteIsSurvived()
{
    QFETCH(QByteArray, content);
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

void PropertyListTest::everyCutIsSurvived()
{
    const QByteArray content = binary(Everything);
    for (qsizetype length = 0; length < content.size(); ++length)
        QVERIFY2(!parsePropertyList(content.left(length)), qPrintable(QString::number(length)));
}

PLOVENDIX_TEST(PropertyListTest)
#include "PropertyListTest.moc"
