#include <features/about/RtfReader.h>
#include <tests/support/TestMain.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
QByteArray rtf(const QByteArray &body)
{
    return "{\\rtf1\\ansi " + body + "}";
}

QList<RtfRun> runsOf(const QByteArray &body)
{
    const auto runs = readRtf(rtf(body));
    return runs ? *runs : QList<RtfRun>();
}

QByteArray nested(int depth)
{
    return "{\\rtf1" + QByteArray(depth - 1, '{') + "x" + QByteArray(depth, '}');
}

QString textOf(const QList<RtfRun> &runs)
{
    QString text;
    for (const RtfRun &run : runs)
        text += run.text;
    return text;
}
} // namespace

/// What the reader makes of files, also of those that are cut off, huge, or written to do harm.
class RtfReaderTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plainTextIsRead_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const QByteArray &body, const QString &text) {
            QTest::newRow(name) << body << text;
        };
        row("text", "Hello", u"Hello"_s);
        row("paragraphs", "a\\par b\\par\nc", u"a\nb\nc"_s);
        row("escaped line break", "a\\\nb\\\r\nc", u"a\nb\nc"_s);
        row("line breaks of the file", "a\nb\r\nc", u"abc"_s);
        row("escapes", "\\{a\\\\b\\}", u"{a\\b}"_s);
        row("tab and line", "a\\tab b\\line c", u"a\tb\u2028c"_s);
        row("no-break signs", "a\\~b\\_c\\-d", u"a\u00a0b\u2011cd"_s);
        row("named signs", "\\lquote a\\rquote\\emdash\\bullet", u"\u2018a\u2019\u2014\u2022"_s);
        row("byte", "caf\\'e9 \\'80\\'93", u"café €“"_s);
        row("byte without a meaning", "\\'81", u"\ufffd"_s);
        row("word ends at one space", "\\b  x", u" x"_s);
        row("unknown words", "\\foo12\\bar-3 x\\baz", u"x"_s);
        row("unknown symbol", "a\\|b", u"ab"_s);
        row("groups", "a{b{c}d}e", u"abcde"_s);
        row("hidden text", "a{\\v b}c\\v d\\v0 e", u"ace"_s);
        row("unicode", "\\u8217?", u"\u2019"_s);
        row("unicode as a negative number", "\\u-4077?", u"\uf013"_s);
        row("unicode as a large number", "\\u61459?", u"\uf013"_s);
        row("a pair", "\\u-10179?\\u-8704?", u"\U0001f600"_s);
        row("stand-ins of two", "\\uc2\\u233 xyz", u"éz"_s);
        row("no stand-in", "\\uc0\\u233 xyz", u"éxyz"_s);
        row("stand-in of a byte", "\\u233\\'65x", u"éx"_s);
        row("stand-in ends with its group", "{\\uc9\\u233 a}b", u"éb"_s);
        row("length of stand-ins ends with its group", "{\\uc0 }\\u233 ab", u"éb"_s);
        row("table of fonts", "{\\fonttbl{\\f0\\fswiss Sans;}}a", u"a"_s);
        row("style sheet and information", "{\\stylesheet{\\s0 Normal;}}{\\info{\\title T}}a", u"a"_s);
        row("optional destination", "{\\*\\generator Writer;}a{\\*\\foo{b\\par}}c", u"ac"_s);
        row("picture", "{\\pict\\pngblip 89504e47}a", u"a"_s);
        row("what follows the file's group", "a}b{c", u"a"_s);
        row("groups that close too often", "a}}}}{{{", u"a"_s);
    }
    void plainTextIsRead()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, text);
        QCOMPARE(textOf(runsOf(body)), text);
    }

    void looksHoldUntilTheirGroupEnds()
    {
        const auto runs = runsOf("a{\\b b{\\i c}d}e\\b f\\b0 g\\i h\\plain i");
        QStringList described;
        for (const auto &run : runs)
            described += run.text + (run.look.fontWeight() == QFont::Bold ? u"B"_s : QString()) +
                         (run.look.fontItalic() ? u"I"_s : QString());
        QCOMPARE(described,
                 (QStringList{u"a"_s, u"bB"_s, u"cBI"_s, u"dB"_s, u"e"_s, u"fB"_s, u"g"_s, u"hI"_s, u"i"_s}));
    }

    void sizesAreHalfPoints_data()
    {
        QTest::addColumn<QByteArray>("word");
        QTest::addColumn<double>("points");
        QTest::newRow("none") << QByteArray() << 0.0;
        QTest::newRow("whole") << QByteArray("\\fs36 ") << 18.0;
        QTest::newRow("half") << QByteArray("\\fs21 ") << 10.5;
        QTest::newRow("no number") << QByteArray("\\fs ") << 12.0;
        QTest::newRow("negative") << QByteArray("\\fs-20 ") << 4.0;
        QTest::newRow("huge") << QByteArray("\\fs99999999999999 ") << 96.0;
    }
    void sizesAreHalfPoints()
    {
        QFETCH(QByteArray, word);
        QFETCH(double, points);
        const QTextCharFormat look = runsOf(word + "x").first().look;
        QCOMPARE(look.hasProperty(QTextFormat::FontPointSize), !word.isEmpty());
        QCOMPARE(look.fontPointSize(), points);
    }

    void coloursComeFromTheTable_data()
    {
        QTest::addColumn<QByteArray>("number");
        QTest::addColumn<QColor>("color");
        QTest::newRow("automatic") << QByteArray("0") << QColor();
        QTest::newRow("first") << QByteArray("1") << QColor(255, 0, 0);
        QTest::newRow("second, parts beyond their range") << QByteArray("2") << QColor(0, 255, 10);
        QTest::newRow("beyond the table") << QByteArray("7") << QColor();
        QTest::newRow("negative") << QByteArray("-1") << QColor();
    }
    void coloursComeFromTheTable()
    {
        QFETCH(QByteArray, number);
        QFETCH(QColor, color);
        const auto runs =
            runsOf("{\\colortbl;\\red255\\green0\\blue0;\\red-9\\green999\\blue10;}\\cf" + number + " x");
        QCOMPARE(runs.size(), 1);
        QCOMPARE(runs.first().text, u"x"_s);
        QCOMPARE(runs.first().look.hasProperty(QTextFormat::ForegroundBrush), color.isValid());
        if (color.isValid())
            QCOMPARE(runs.first().look.foreground().color(), color);
    }

    void onlyWebLinksAreLinks_data()
    {
        QTest::addColumn<QByteArray>("instruction");
        QTest::addColumn<QString>("link");
        QTest::newRow("https") << QByteArray("HYPERLINK \"https://a.example/b?c=d\"")
                               << u"https://a.example/b?c=d"_s;
        QTest::newRow("group inside")
            << QByteArray("{HYPERLINK \"http://a.example/\"}") << u"http://a.example/"_s;
        QTest::newRow("mail") << QByteArray("HYPERLINK \"mailto:a@b.example\"") << u"mailto:a@b.example"_s;
        QTest::newRow("file") << QByteArray("HYPERLINK \"file:///etc/passwd\"") << QString();
        QTest::newRow("script") << QByteArray("HYPERLINK \"javascript:alert(1)\"") << QString();
        QTest::newRow("relative") << QByteArray("HYPERLINK \"a.html\"") << QString();
        QTest::newRow("unquoted") << QByteArray("HYPERLINK https://a.example/") << QString();
        QTest::newRow("another field") << QByteArray("PAGE \"https://a.example/\"") << QString();
    }
    void onlyWebLinksAreLinks()
    {
        QFETCH(QByteArray, instruction);
        QFETCH(QString, link);
        const auto read = runsOf("a {\\field{\\*\\fldinst " + instruction + "}{\\fldrslt b{\\b c}}} d");
        QCOMPARE(textOf(read), u"a bc d"_s);
        for (const auto &run : read) {
            const bool inside = run.text == u"b" || run.text == u"c" || run.text == u"bc";
            QCOMPARE(run.look.anchorHref(), inside ? link : QString());
        }
    }

    void aLinkEndsWithItsField()
    {
        const auto read = runsOf("{\\field{\\*\\fldinst HYPERLINK \"https://a.example/\"}{\\fldrslt a}}"
                                 "{\\field{\\*\\fldinst PAGE}{\\fldrslt b}}{\\fldrslt c}");
        QCOMPARE(read.size(), 2);
        QCOMPARE(read.first().look.anchorHref(), u"https://a.example/"_s);
        QVERIFY(read.last().look.anchorHref().isEmpty());
    }

    void incompleteRichTextIsRefused_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("plain text") << QByteArray("Credits");
        QTest::newRow("another group") << QByteArray("{\\foo x}");
        QTest::newRow("byte that is none") << QByteArray("{\\rtf1 a\\'zz}");
        QTest::newRow("endless word") << "{\\rtf1\\" + QByteArray(1000, 'a') + "}";
        QTest::newRow("too deep") << nested(MaxRtfDepth + 1);
        QTest::newRow("too large") << "{\\rtf1 " + QByteArray(MaxRtfBytes, 'a') + "}";
    }
    void incompleteRichTextIsRefused()
    {
        QFETCH(QByteArray, file);
        QVERIFY(!readRtf(file));
    }

    void theDeepestAndLargestAreRead()
    {
        const auto deep = readRtf(nested(MaxRtfDepth));
        QVERIFY(deep);
        QCOMPARE(deep->first().text, u"x"_s);
        const QByteArray start = "{\\rtf1 ";
        const auto large = readRtf(start + QByteArray(MaxRtfBytes - start.size() - 1, 'a') + "}");
        QVERIFY(large);
        QCOMPARE(large->first().text.size(), MaxRtfBytes - start.size() - 1);
    }

    void everyCutOfAFileIsRefused()
    {
        const QByteArray file = "{\\rtf1\\ansi{\\colortbl;\\red1\\green2\\blue3;}{\\*\\x y}\\b a\\u233?\\'e9"
                                "{\\field{\\*\\fldinst HYPERLINK \"https://a.example/\"}{\\fldrslt b}}\\par}";
        QVERIFY(readRtf(file));
        for (qsizetype length = 0; length < file.size(); ++length)
            QVERIFY2(!readRtf(file.left(length)), qPrintable(QString::number(length)));
    }

    void strangeCharactersAreReplaced_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("text");
        QTest::newRow("beyond unicode") << QByteArray("\\u99999?x") << u"\ufffdx"_s;
        QTest::newRow("far beyond") << QByteArray("\\u99999999999999999999?x") << u"\ufffdx"_s;
        QTest::newRow("below") << QByteArray("\\u-99999?x") << u"\ufffdx"_s;
        QTest::newRow("no number") << QByteArray("\\u ?x") << u"\ufffdx"_s;
        QTest::newRow("first half alone") << QByteArray("\\u-10179?x") << u"\ufffdx"_s;
        QTest::newRow("second half alone") << QByteArray("\\u-8704?x") << u"\ufffdx"_s;
        QTest::newRow("halves apart") << QByteArray("\\u-10179?{\\b\\u-8704?}x") << u"\ufffd\ufffdx"_s;
        QTest::newRow("zero") << QByteArray("\\u0?x") << u"\ufffdx"_s;
        QTest::newRow("control character") << QByteArray("\\'07x\x01") << u"\ufffdx\ufffd"_s;
        QTest::newRow("endless stand-in") << QByteArray("\\uc2147483647\\u233 abc") << u"é"_s;
        QTest::newRow("negative stand-in") << QByteArray("\\uc-5\\u233 abc") << u"éabc"_s;
    }
    void strangeCharactersAreReplaced()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, text);
        QCOMPARE(textOf(runsOf(body)), text);
    }

    void destinationsInsideSkippedOnesStaySkipped()
    {
        const auto read = readRtf("{\\rtf1{\\pict{\\fldrslt a}{\\colortbl;\\red9;}{\\fldinst b}c}{\\cf1 d}}");
        QVERIFY(read);
        QCOMPARE(read->first().text, u"d"_s);
        QVERIFY(!read->first().look.hasProperty(QTextFormat::ForegroundBrush));
    }

    void filesThatCannotBeReadAreRefused()
    {
        const QTemporaryDir folder;
        QVERIFY(!readRtfFile(folder.filePath(u"missing.rtf"_s)));
        QVERIFY(!readRtfFile(folder.path()));
        QFile file(folder.filePath(u"whole.rtf"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{\\rtf1 a}");
        file.close();
        QVERIFY(readRtfFile(file.fileName()));
        QVERIFY(file.resize(qint64{1} << 33)); // sparse: eight gigabytes that are not there
        QVERIFY(!readRtfFile(file.fileName()));
    }
};

PLOVENDIX_TEST(RtfReaderTest)
#include "RtfReaderTest.moc"
