#include <sources/catalogue/SearchWords.h>
#include <tests/support/TestMain.h>

#include <QTest>

class SearchWordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsAreFolded_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("words");
        const auto row = [](const char *label, const char *text, const char *words) {
            QTest::newRow(label) << QString::fromUtf8(text) << QString::fromUtf8(words);
        };
        row("case and separators", "Harbour.LIGHTS_2019", "harbour lights 2019");
        row("diacritics", "Crème Brûlée à Ålesund", "creme brulee a alesund");
        row("decomposed diacritics", "Cre\u0300me", "creme");
        row("letters without a decomposition", "Straße Łódź Ærø Œuvre İstanbul ısı",
            "strasse lodz aero oeuvre istanbul isi");
        row("apostrophes", "Cartographer's Don’t", "cartographers dont");
        row("width", "Ｌｉｇｈｔｓ", "lights");
        row("Greek", "Φώτα ΤΟΥ λιμανιού", "φωτα του λιμανιου");
        row("Cyrillic", "Ёлка", "елка");
        row("Japanese", "港の灯り", "港 の 灯 り");
        row("voiced kana", "ガラス", "カ ラ ス");
        row("Chinese and Latin", "灯火Brack", "灯 火 brack");
        row("emoji", "Lights \U0001F6A2 off", "lights off");
        row("quotes and operators", "\"Lights\" AND (NEAR* -^:", "lights and near");
        row("nothing", " .-_! ", "");
    }

    void wordsAreFolded()
    {
        QFETCH(QString, text);
        QFETCH(QString, words);
        QCOMPARE(searchWords(text).join(QLatin1Char(' ')), words);
    }

    void koreanWordsBeginAlike()
    {
        QVERIFY(searchWords(QStringLiteral("항구의"))
                    .first()
                    .startsWith(searchWords(QStringLiteral("항구")).first()));
    }

    void wordsAreBounded()
    {
        QCOMPARE(searchWords(QStringLiteral("a ").repeated(5000)).size(), 32);
        QCOMPARE(searchWords(QStringLiteral("a").repeated(65536)).first().size(), 40);
        QCOMPARE(searchWords(QString(QChar(0xd83d)).repeated(10)).size(), 0);
    }
};

PLOVENDIX_TEST(SearchWordsTest)
#include "SearchWordsTest.moc"
