#include <base/TerminalText.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class TerminalTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyWhatIsShownIsLeft_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::newRow("plain") << u"Größe 映画 “a”"_s << u"Größe 映画 “a”"_s;
        QTest::newRow("nothing") << QString() << QString();
        QTest::newRow("colour") << u"\u001b[31mred\u001b[0m"_s << u"[31mred[0m"_s;
        QTest::newRow("title") << u"\u001b]0;title\u0007name"_s << u"]0;titlename"_s;
        QTest::newRow("eight-bit sequences") << u"a\u009b2Jb\u009dc"_s << u"a2Jbc"_s;
        QTest::newRow("backspace") << u"good\b\b\b\bbad"_s << u"goodbad"_s;
        QTest::newRow("zero") << (u"a"_s + QChar(0) + u"b"_s) << u"ab"_s;
        QTest::newRow("delete") << u"a\u007fb"_s << u"ab"_s;
        QTest::newRow("line ends") << u"a\nb\r\nc\u2028d\u2029e\u0085f"_s << u"a b  c d e f"_s;
        QTest::newRow("tab") << u"a\tb"_s << u"a b"_s;
        QTest::newRow("direction") << u"a\u202egpj.exe\u202c \u2066b\u2069"_s << u"agpj.exe b"_s;
        QTest::newRow("no width") << u"a\u200b\u200db\ufeff"_s << u"ab"_s;
        QTest::newRow("tags") << u"a\U000e0041b"_s << u"ab"_s;
        QTest::newRow("beyond the first plane") << u"a\U0001f600b"_s << u"a\U0001f600b"_s;
        QTest::newRow("half a pair") << (u"a"_s + QChar(0xd83d) + u"b"_s) << u"a\ufffdb"_s;
    }
    void onlyWhatIsShownIsLeft()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, shown);
        QCOMPARE(terminalText(text), shown);
    }
};

PLOVENDIX_PLAIN_TEST(TerminalTextTest)
#include "TerminalTextTest.moc"
