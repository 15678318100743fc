#include <features/about/RtfReader.h>
#include <tests/support/TestMain.h>

#include <QTemporaryDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

/// Files that are cut off, huge, or written to do harm.
class RtfDamageTest final : public QObject
{
    Q_OBJECT

private:
    static QByteArray nested(int depth)
    {
        return "{\\rtf1" + QByteArray(depth - 1, '{') + "x" + QByteArray(depth, '}');
    }

private Q_SLOTS:
    void incompleteRichTextIsRefused_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("plain text") << QByteArray("Credits");
        QTest::newRow("another format") << QByteArray("\x89PNG\r\n\x1a\n");
        QTest::newRow("another group") << QByteArray("{\\foo x}");
        QTest::newRow("never closed") << QByteArray("{\\rtf1 a{\\b b}");
        QTest::newRow("cut within a word") << QByteArray("{\\rtf1 a\\pa");
        QTest::newRow("cut after a backslash") << QByteArray("{\\rtf1 a\\");
        QTest::newRow("cut within a byte") << QByteArray("{\\rtf1 a\\'e");
        QTest::newRow("byte that is none") << QByteArray("{\\rtf1 a\\'zz}");
        QTest::newRow("endless word") << "{\\rtf1\\" + QByteArray(1000, 'a') + "}";
        QTest::newRow("too deep") << nested(MaxRtfDepth + 1);
        QTest::newRow("far too deep") << "{\\rtf1" + QByteArray(400'000, '{');
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
        const auto read = readRtf("{\\rtf1 " + body + "}");
        QVERIFY(read);
        QString all;
        for (const RtfRun &run : *read)
            all += run.text;
        QCOMPARE(all, text);
    }

    void groupsThatCloseTooOftenEndTheFile()
    {
        const auto read = readRtf("{\\rtf1 a}}}}}{{{");
        QVERIFY(read);
        QCOMPARE(read->first().text, u"a"_s);
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

PLOVENDIX_TEST(RtfDamageTest)
#include "RtfDamageTest.moc"
