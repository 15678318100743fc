#include <tests/ui/views/Painted.h>

#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>

#include <QAccessible>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// The columns that hold any ink.
QList<int> inkedColumns(const ui::Label &label, const QSize &size)
{
    const QImage image =
        painted(size, [&](QPainter &painter) { label.draw(painter, QRect({}, size), label.palette()); });
    QList<int> columns;
    for (int x = 0; x < size.width(); ++x) {
        for (int y = 0; y < size.height(); ++y) {
            if (image.pixelColor(x, y).lightness() < 200) {
                columns += x;
                break;
            }
        }
    }
    return columns;
}

bool isInked(const ui::Label &label)
{
    return !inkedColumns(label, {200, 30}).isEmpty();
}

QImage drawnText(const QString &text, Qt::TextElideMode mode)
{
    ui::Label label;
    label.setText(text);
    label.setElideMode(mode);
    return painted({120, 30}, [&](QPainter &painter) {
        label.draw(painter, {0, 0, 120, 30}, label.palette());
    });
}
} // namespace

class LabelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QPalette palette;
        palette.setColor(QPalette::WindowText, Qt::black);
        palette.setColor(QPalette::PlaceholderText, QColor(0x80, 0, 0));
        QApplication::setPalette(palette);
    }

    void sizeDoesNotDependOnTheText()
    {
        ui::Label label;
        const QSize hint = label.sizeHint();
        const QSize minimum = label.minimumSizeHint();
        label.setText(u"A text that is a good deal longer than nothing\nand has two lines"_s);
        QCOMPARE(label.sizeHint(), hint);
        QCOMPARE(label.minimumSizeHint(), minimum);
        QCOMPARE(hint.height(), label.fontMetrics().height());
    }

    void textIsNeverMarkup()
    {
        ui::Label label;
        label.setText(u"<img src=\"x\">"_s);
        QVERIFY(isInked(label));
        QCOMPARE(ui::Label::singleLine(u"<b>a</b> &amp;"_s), u"<b>a</b> &amp;"_s);
        // An ampersand is no mnemonic either.
        QVERIFY(drawnText(u"a&b"_s, Qt::ElideNone) != drawnText(u"ab"_s, Qt::ElideNone));
    }

    void lineBreaksAndControlsBecomeSpaces_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("line");
        QTest::newRow("plain") << u"A film (2019)"_s << u"A film (2019)"_s;
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("newline") << u"a\nb"_s << u"a b"_s;
        QTest::newRow("carriage return and newline") << u"a\r\nb"_s << u"a b"_s;
        QTest::newRow("tabulator") << u"a\tb"_s << u"a b"_s;
        QTest::newRow("zero") << u"a"_s + QChar(u'\0') + u"b"_s << u"a b"_s;
        QTest::newRow("bell and escape") << u"a\u0007\u001bb"_s << u"a  b"_s;
        QTest::newRow("next line") << u"a\u0085b"_s << u"a b"_s;
        QTest::newRow("line separator") << u"a\u2028b"_s << u"a b"_s;
        QTest::newRow("paragraph separator") << u"a\u2029b"_s << u"a b"_s;
    }

    void lineBreaksAndControlsBecomeSpaces()
    {
        QFETCH(QString, text);
        QFETCH(QString, line);
        QCOMPARE(ui::Label::singleLine(text), line);
    }

    void reorderingCharactersDoNotShow()
    {
        // Such a character would make "exe.srt" of "trs.exe".
        QCOMPARE(ui::Label::singleLine(u"film\u202etrs.exe\u202c"_s), u"filmtrs.exe"_s);
        QCOMPARE(ui::Label::singleLine(u"\u2066a\u2069b"_s), u"ab"_s);
        QCOMPARE(drawnText(u"film\u202etrs.exe"_s, Qt::ElideNone),
                 drawnText(u"filmtrs.exe"_s, Qt::ElideNone));
    }

    void rightToLeftTextKeepsItsLetters()
    {
        const QString hebrew = u"\u05e9\u05dc\u05d5\u05dd 2019"_s;
        QCOMPARE(ui::Label::singleLine(hebrew), hebrew);
        QCOMPARE(ui::Label::singleLine(hebrew + u"\u200f"_s),
                 hebrew + u"\u200f"_s); // a mark that is part of good spelling
    }

    void endlessTextIsBounded()
    {
        const QString text = u"begin"_s + QString(1'000'000, u'x') + u"end"_s;
        const QString line = ui::Label::singleLine(text);
        QVERIFY(line.size() <= 1001);
        QVERIFY(line.startsWith(u"begin"_s));
        QVERIFY(line.endsWith(u"end"_s));
        ui::Label label;
        label.setText(text);
        QCOMPARE(label.text(), text); // the text itself is kept
        QVERIFY(isInked(label));
    }

    void textThatDoesNotFitIsElided()
    {
        const QString text = u"A very long name that does not fit into its place at all"_s;
        QCOMPARE(drawnText(text + u" one"_s, Qt::ElideRight), drawnText(text + u" two"_s, Qt::ElideRight));
        QVERIFY(drawnText(text, Qt::ElideRight) != drawnText(text, Qt::ElideNone));
    }

    void middleElisionKeepsBothEnds()
    {
        const QString middle(60, u'm');
        const auto drawn = [](const QString &text) { return drawnText(text, Qt::ElideMiddle); };
        QVERIFY(drawn(u"A"_s + middle + u"Z"_s) != drawn(u"B"_s + middle + u"Z"_s));
        QVERIFY(drawn(u"A"_s + middle + u"Z"_s) != drawn(u"A"_s + middle + u"Y"_s));
        QCOMPARE(drawn(u"A"_s + middle + u"i"_s + middle + u"Z"_s), drawn(u"A"_s + middle + u"Z"_s));
    }

    void nothingIsDrawnOutsideTheRectangle()
    {
        ui::Label label;
        label.setText(QString(200, u'M'));
        for (const auto mode : {Qt::ElideRight, Qt::ElideMiddle, Qt::ElideLeft}) {
            label.setElideMode(mode);
            const QImage image = painted({200, 30}, [&](QPainter &painter) {
                label.draw(painter, {50, 0, 100, 30}, label.palette());
            });
            for (int y = 0; y < 30; ++y) {
                QCOMPARE(image.pixelColor(47, y), QColor(Qt::white));
                QCOMPARE(image.pixelColor(152, y), QColor(Qt::white));
            }
        }
    }

    void alignmentIsThatOfTheInterface()
    {
        ui::Label label;
        label.setText(
            u"\u05e9\u05dc\u05d5\u05dd"_s); // a text from right to left stays on the left of this interface
        QVERIFY(inkedColumns(label, {200, 30}).last() < 100);
        label.setText(u"film"_s);
        QVERIFY(inkedColumns(label, {200, 30}).last() < 100);
        label.setLayoutDirection(Qt::RightToLeft);
        QVERIFY(inkedColumns(label, {200, 30}).first() > 100);
        label.setAlignment(Qt::AlignCenter);
        const auto columns = inkedColumns(label, {200, 30});
        QVERIFY(qAbs(columns.first() + columns.last() - 200) < 6);
    }

    void rolesHaveTheirColours()
    {
        ui::Label label;
        label.setText(QString(30, QChar(0x2588))); // full blocks
        const auto ink = [&] {
            const QImage image = painted({60, 20}, [&](QPainter &painter) {
                label.draw(painter, {0, 0, 60, 20}, label.palette());
            });
            QColor darkest = Qt::white;
            for (int x = 0; x < 60; ++x)
                darkest = image.pixelColor(x, 10).lightness() < darkest.lightness() ? image.pixelColor(x, 10)
                                                                                    : darkest;
            return darkest;
        };
        QVERIFY(isNear(ink(), Qt::black, 40));
        label.setRole(ui::Label::TextRole::Secondary);
        QVERIFY(isNear(ink(), QColor(0x80, 0, 0), 40));
    }

    void readsAsStaticTextWithItsText()
    {
        ui::Label label;
        label.setText(u"A film\n(2019)"_s);
        const auto *accessible = QAccessible::queryAccessibleInterface(&label);
        QVERIFY(accessible);
        QCOMPARE(accessible->role(), QAccessible::StaticText);
        QCOMPARE(accessible->text(QAccessible::Name), u"A film\n(2019)"_s);
        label.setText(u"Another"_s);
        QCOMPARE(accessible->text(QAccessible::Name), u"Another"_s);
    }

    void givenAccessibleNameWins()
    {
        ui::Label label;
        label.setText(u"2019"_s);
        label.setAccessibleName(u"Year"_s);
        QCOMPARE(QAccessible::queryAccessibleInterface(&label)->text(QAccessible::Name), u"Year"_s);
    }

    void showsWhatItDraws()
    {
        ui::Label label;
        label.resize(120, 30);
        const QImage empty = label.grab().toImage();
        label.setText(u"Something"_s);
        QVERIFY(label.grab().toImage() != empty);
    }
};

PLOVENDIX_GUI_TEST(LabelTest)
#include "LabelTest.moc"
