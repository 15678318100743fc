#include <tests/support/TestMain.h>
#include <ui/controls/CharacterWidths.h>

#include <QFontMetrics>
#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;

class CharacterWidthsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void latinTextFitsIntoAWideRoom_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("release") << u"The.Long.Harbour.S01E02.1080p.WEB-DL.x264-GRP.srt"_s;
        QTest::newRow("details") << u"The Long Harbour (2019) · 23.976 fps · 1,234 downloads"_s;
        QTest::newRow("accents") << u"Café où l'été s'arrête"_s;
        QTest::newRow("kerned") << u"AVAVAVATAToToToYaYa"_s;
        QTest::newRow("one") << u"W"_s;
    }

    void latinTextFitsIntoAWideRoom()
    {
        QFETCH(QString, text);
        CharacterWidths widths;
        const QFont font = QGuiApplication::font();
        QVERIFY(widths.surelyFits(text, font, 2 * QFontMetrics(font).horizontalAdvance(text) + 2));
    }

    void nothingIsSaidOfATextThatWouldBeElided_data() { latinTextFitsIntoAWideRoom_data(); }

    void nothingIsSaidOfATextThatWouldBeElided()
    {
        QFETCH(QString, text);
        CharacterWidths widths;
        const QFont font = QGuiApplication::font();
        const QFontMetrics metrics(font);
        for (int width = 0; width < metrics.horizontalAdvance(text) + 2; ++width) {
            if (metrics.elidedText(text, Qt::ElideRight, width) != text)
                QVERIFY(!widths.surelyFits(text, font, width));
        }
    }

    void nothingIsSaidOfOtherCharacters_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("Hebrew") << u"סרט"_s;
        QTest::newRow("Chinese") << u"电影"_s;
        QTest::newRow("combining") << u"e\u0301"_s;
        QTest::newRow("soft hyphen") << u"a\u00adb"_s;
        QTest::newRow("control") << u"a\u0007b"_s;
        QTest::newRow("emoji") << u"\U0001f3ac"_s;
    }

    void nothingIsSaidOfOtherCharacters()
    {
        QFETCH(QString, text);
        CharacterWidths widths;
        QVERIFY(!widths.surelyFits(text, QGuiApplication::font(), 10'000));
    }

    void anotherFontIsMeasuredAnew()
    {
        CharacterWidths widths;
        QFont font = QGuiApplication::font();
        const QString text = u"MMMMMMMMMM"_s;
        const int room = 2 * QFontMetrics(font).horizontalAdvance(text);
        QVERIFY(widths.surelyFits(text, font, room));
        font.setPointSizeF(3 * font.pointSizeF());
        QVERIFY(!widths.surelyFits(text, font, room));
    }

    void nothingIsSaidOfSpacedLetters()
    {
        CharacterWidths widths;
        QFont font = QGuiApplication::font();
        font.setLetterSpacing(QFont::AbsoluteSpacing, 20);
        QVERIFY(!widths.surelyFits(u"film"_s, font, 60));
        QVERIFY(!widths.surelyFits(u"film"_s, font, 10'000));
    }
};

PLOVENDIX_GUI_TEST(CharacterWidthsTest)
#include "CharacterWidthsTest.moc"
