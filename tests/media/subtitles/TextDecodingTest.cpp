#include <media/subtitles/LegacyText.h>
#include <media/subtitles/TextDecoding.h>
#include <tests/support/TestMain.h>

#include <QStringEncoder>
#include <QTest>

using namespace Qt::StringLiterals;

class TextDecodingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreReadInTheirLanguagesSets_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("set");
        const auto row = [](const char *set, const char *language, const QString &text) {
            QTest::addRow("%s %s", language, set)
                << text << QString::fromLatin1(language) << QString::fromLatin1(set);
        };
        row("utf-8", "eng", u"Café – naïve “quoted”"_s);
        row("windows-1252", "fre", u"Ça va très bien, à bientôt… l’œuvre"_s);
        row("windows-1250", "pol", u"Zażółć gęślą jaźń. Świat"_s);
        row("windows-1250", "cze", u"Příliš žluťoučký kůň úpěl ďábelské ódy"_s);
        row("windows-1251", "rus", u"Съешь же ещё этих мягких французских булок"_s);
        row("windows-1253", "ell", u"Άλλος ένας λόγος. Έλα εδώ"_s);
        row("iso-8859-7", "ell", u"Άλλος ένας λόγος. Έλα εδώ"_s);
        row("windows-1254", "tur", u"Pijamalı hasta yağız şoföre çabucak güvendi"_s);
        row("windows-1255", "heb", u"שלום עולם, מה שלומך"_s);
        row("windows-1256", "ara", u"مرحبا بالعالم كيف حالك"_s);
        row("windows-1257", "lit", u"Įlinkdama fechtuotojo špaga"_s);
        row("gb18030", "chi", u"你好，世界。今天天气很好"_s);
        row("big5", "zht", u"你好，世界。今天天氣很好"_s);
        row("shift_jis", "jpn", u"こんにちは、世界。元気ですか"_s);
        row("euc-jp", "jpn", u"こんにちは、世界。元気ですか"_s);
        row("windows-949", "kor", u"안녕하세요 세계. 잘 지내세요"_s);
        row("tis-620", "tha", u"สวัสดีชาวโลก"_s);
        row("windows-874", "tha", u"สวัสดีชาวโลก “ใช่”"_s);
        row("iso-8859-2", "pol", u"Zażółć gęślą jaźń. Świat"_s);
        row("iso-8859-2", "hun", u"Árvíztűrő tükörfúrógép, jó estét"_s);
        row("windows-1250", "rum", u"„Mâine seară plecăm şi noi în ţară”"_s);
        row("windows-1250", "scc", u"Šta ćeš da radiš večeras, džez"_s);
        row("windows-1251", "scc", u"Шта ћеш да радиш вечерас"_s);
        row("windows-1251", "ukr", u"Їжак із'їв єдиний ґудзик"_s);
        row("windows-1251", "bul", u"Добър вечер, как сте днес"_s);
        row("koi8-r", "rus", u"Съешь же ещё этих мягких французских булок"_s);
        row("iso-8859-5", "rus", u"Съешь же ещё этих мягких французских булок"_s);
        row("iso-8859-9", "tur", u"Pijamalı hasta yağız şoföre çabucak güvendi"_s);
        row("iso-8859-8", "heb", u"שלום עולם, מה שלומך"_s);
        row("iso-8859-6", "ara", u"مرحبا بالعالم كيف حالك"_s);
        row("iso-8859-13", "lav", u"Glāžšķūņa rūķīši dzērumā čiepj"_s);
        row("iso-8859-15", "fre", u"Ça va très bien pour 20 €, l'été à Nîmes"_s);
        row("big5-hkscs", "zht", u"你好，世界。今天天氣很好"_s);
        row("gb2312", "chi", u"你好，世界。今天天气很好"_s);
        row("iso-2022-jp", "jpn", u"こんにちは、世界。元気ですか"_s);
        row("euc-kr", "kor", u"안녕하세요 세계. 잘 지내세요"_s);
    }
    void textsAreReadInTheirLanguagesSets()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, language);
        QFETCH(const QString, set);
        QStringEncoder encode(set.toLatin1().constData());
        QVERIFY(encode.isValid());
        const QByteArray once = encode(text + u'\n');
        // Short, for the language's table, and long, for the detector.
        QCOMPARE(decodedText(once, language).text, text + u'\n');
        QCOMPARE(decodedText(once.repeated(30), language).text.left(text.size()), text);
    }

    /// What no decoder of the toolkit knows.
    void rareSetsAreReadByTheSystem_data()
    {
        QTest::addColumn<QByteArray>("set");
        QTest::addColumn<QByteArray>("hex");
        QTest::addColumn<QString>("text");
        QTest::newRow("viscii") << QByteArray("viscii") << QByteArray("54 69 aa 6e 67 20 56 69 ae 74")
                                << u"Tiếng Việt"_s;
        QTest::newRow("iso-8859-16") << QByteArray("iso-8859-16") << QByteArray("ba 69 20 fe 61 72 e3")
                                     << u"și țară"_s;
        QTest::newRow("georgian-ps") << QByteArray("georgian-ps") << QByteArray("c0 c1 c2") << u"აბგ"_s;
        QTest::newRow("with a hole") << QByteArray("johab") << QByteArray("88 61 ff 88 61")
                                     << u"가\uFFFD가"_s;
    }
    void rareSetsAreReadByTheSystem()
    {
        QFETCH(const QByteArray, set);
        QFETCH(const QByteArray, hex);
        QFETCH(const QString, text);
        const auto read = LegacyText::read(QByteArray::fromHex(hex), set);
        QVERIFY(read);
        QCOMPARE(read->text, text);
        QCOMPARE(read->hasErrors, text.contains(QChar::ReplacementCharacter));
        // Long ones come in several pieces.
        const auto repeated = LegacyText::read(QByteArray::fromHex(hex).repeated(30'000), set);
        QCOMPARE(repeated->text, text.repeated(30'000));
    }

    void unknownSetIsNone() { QVERIFY(!LegacyText::read("abc", "no-such-set")); }

    void vietnameseIsReadInBothItsSets_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QStringEncoder encode("windows-1258");
        // Letters with a hook or a circumflex, and the tones after them.
        const QString apart = u"Ti\u00EA\u0301ng Vi\u00EA\u0323t râ\u0301t hay\n"_s;
        QTest::newRow("windows-1258") << QByteArray(encode(apart)).repeated(30);
        QTest::newRow("viscii") << QByteArray::fromHex("5469aa6e67205669ae742072a474206861790a").repeated(30);
    }
    void vietnameseIsReadInBothItsSets()
    {
        QFETCH(const QByteArray, bytes);
        QCOMPARE(decodedText(bytes, u"vie"_s).text, u"Tiếng Việt rất hay\n"_s.repeated(30));
    }

    void fewWrongBytesLeaveTheRestInUtf8()
    {
        const QString line = u"Příliš žluťoučký kůň – „uvozovky“\n"_s;
        const QByteArray bytes = line.repeated(5).toUtf8() + "a \xFF b\n";
        const QString text = decodedText(bytes, u"cze"_s).text;
        QVERIFY(text.startsWith(line));
        QCOMPARE(text.count(QChar::ReplacementCharacter), 1);
        // Nothing is right by chance in what is something else.
        QStringEncoder encode("windows-1250");
        const QByteArray other = encode(line.repeated(5));
        QCOMPARE(decodedText(other, u"cze"_s).text, line.repeated(5));
    }

    void marksAreObeyed_data()
    {
        QTest::addColumn<int>("encoding");
        for (const auto encoding :
             {QStringConverter::Utf8, QStringConverter::Utf16LE, QStringConverter::Utf16BE,
              QStringConverter::Utf32LE, QStringConverter::Utf32BE})
            QTest::newRow(QStringConverter::nameForEncoding(encoding)) << static_cast<int>(encoding);
    }
    void marksAreObeyed()
    {
        QFETCH(const int, encoding);
        QStringEncoder encode(static_cast<QStringConverter::Encoding>(encoding),
                              QStringConverter::Flag::WriteBom);
        QCOMPARE(decodedText(encode(u"Zażółć – 你"_s), u"eng"_s).text, u"Zażółć – 你"_s);
    }

    void wideTextsNeedNoMark_data()
    {
        QTest::addColumn<int>("encoding");
        QTest::addColumn<QString>("line");
        for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE,
                                    QStringConverter::Utf32LE, QStringConverter::Utf32BE}) {
            for (const char *line :
                 {"Plain words", "Zażółć gęślą", "你好，世界。", "🎬 😀", "一", "一　二", "そう　一つ"})
                QTest::addRow("%s %s", QStringConverter::nameForEncoding(encoding), line)
                    << static_cast<int>(encoding) << QString::fromUtf8(line);
        }
    }
    void wideTextsNeedNoMark()
    {
        QFETCH(const int, encoding);
        QFETCH(const QString, line);
        const QString text = u"1\r\n00:00:01,000 --> 00:00:02,000\r\n"_s + line + u"\r\n\r\n"_s;
        QStringEncoder encode(static_cast<QStringConverter::Encoding>(encoding));
        QByteArray bytes = encode(text);
        QVERIFY(!bytes.startsWith("\xff") && !bytes.startsWith("\xfe"));
        QCOMPARE(decodedText(bytes, u"eng"_s).text, text);
        QCOMPARE(decodedText(bytes + bytes, u"eng"_s).text, text + text);
        bytes.chop(1); // a file that was cut
        QCOMPARE(decodedText(bytes, u"eng"_s).text, text.chopped(1));
    }

    void zerosInOtherTextsAreKept()
    {
        const QString text = u"Zażółć gęślą jaźń, 1\n"_s;
        const QString read = decodedText(text.toUtf8() + QByteArray(3, '\0'), u"pol"_s).text;
        QVERIFY(read.startsWith(text));
        QCOMPARE(read.count(QChar(0)), 3);
        QVERIFY(decodedText(QByteArray(64, '\0'), u"eng"_s).text.contains(QChar(0)));
    }

    void longTextsAreDetectedByAPart_data()
    {
        QTest::addColumn<QByteArray>("set");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("plainLines");
        QTest::newRow("one byte") << QByteArray("windows-1250") << u"pol"_s << u"Zażółć gęślą jaźń. Świat\n"_s
                                  << 0;
        QTest::newRow("one byte, late")
            << QByteArray("windows-1250") << u"pol"_s << u"Zażółć gęślą jaźń. Świat\n"_s << 60'000;
        QTest::newRow("two bytes") << QByteArray("gb18030") << u"chi"_s << u"你好，世界。今天天气很好\n"_s
                                   << 0;
        QTest::newRow("two bytes, late")
            << QByteArray("gb18030") << u"chi"_s << u"你好，世界。今天天气很好\n"_s << 60'000;
    }
    void longTextsAreDetectedByAPart()
    {
        QFETCH(const QByteArray, set);
        QFETCH(const QString, language);
        QFETCH(const QString, line);
        QFETCH(const int, plainLines);
        const QString text = u"plain line\n"_s.repeated(plainLines) + line.repeated(20'000);
        QStringEncoder encode(set.constData());
        const QByteArray bytes = encode(text);
        QVERIFY(bytes.size() > 400'000);
        const DecodedText decoded = decodedText(bytes, language);
        QCOMPARE(decoded.characterSet, set);
        QVERIFY(decoded.text == text);
    }

    void whatFollowsTheJudgedPartIsNotTried()
    {
        const QString line = u"Zażółć gęślą jaźń. Świat\n"_s;
        QStringEncoder one("iso-8859-2");
        QStringEncoder another("windows-1250");
        const QByteArray start = one(line.repeated(20'000));
        const QByteArray rest = another(line.repeated(40'000));
        QCOMPARE(decodedText(rest, u"pol"_s).characterSet, "windows-1250");
        // Twice as much as stands before it speaks for the other set, and is not looked at.
        QCOMPARE(decodedText(start + rest, u"pol"_s).characterSet, "iso-8859-2");
    }

    void anyBytesGiveAText()
    {
        QVERIFY(decodedText({}, u"eng"_s).text.isEmpty());
        QByteArray all;
        for (int byte = 1; byte < 256; ++byte)
            all += static_cast<char>(byte);
        for (const QString &language : {u"eng"_s, u"jpn"_s, u"rus"_s, u"xxx"_s, QString()})
            QVERIFY(decodedText(all, language).text.contains(u"ABC"_s));
        // A mark and half a character.
        QVERIFY(decodedText(QByteArray("\xFF\xFE\x41"), u"eng"_s).text.size() <= 1);
    }

    void everyLanguageHasASet()
    {
        for (const QString &language : {u"eng"_s, u"alb"_s, u"scc"_s, u"vie"_s, u"per"_s, u"mac"_s})
            QVERIFY(!legacyCharacterSets(language).isEmpty());
        QCOMPARE(legacyCharacterSets(u"rus"_s).constFirst(), "windows-1251");
        QCOMPARE(legacyCharacterSets(u"eng"_s).constFirst(), "windows-1252");
        QVERIFY(detectedCharacterSet({}).isEmpty());
    }
};

PLOVENDIX_PLAIN_TEST(TextDecodingTest)
#include "TextDecodingTest.moc"
