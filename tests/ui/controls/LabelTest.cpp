#include <tests/ui/views/Painted.h>

#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>

#include <QAccessible>
#include <QHBoxLayout>

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
        if (hasInk(image, {x, 0, 1, size.height()}))
            columns += x;
    }
    return columns;
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

    void sizeFollowsTheTextOnlyWhenHugging()
    {
        QWidget window;
        ui::Label label;
        const QSize hint = label.sizeHint();
        const QSize minimum = label.minimumSizeHint();
        QCOMPARE(hint.height(), label.fontMetrics().height());
        label.setText(u"A text that is a good deal longer than nothing\nand has two lines"_s);
        QCOMPARE(label.sizeHint(), hint);
        QCOMPARE(label.minimumSizeHint(), minimum);
        label.setHugsText(true);
        QVERIFY(label.hugsText());
        const int wide = label.sizeHint().width();
        QVERIFY(wide > hint.width());
        QHBoxLayout layout(&window);
        layout.addWidget(&label);
        window.resize(2 * wide, 40);
        window.show();
        label.setText(u"Short"_s);
        QTRY_COMPARE(label.width(), label.sizeHint().width()); // laid out anew
        QCOMPARE(label.sizePolicy().horizontalPolicy(), QSizePolicy::Maximum);
        label.setHugsText(false);
        QCOMPARE(label.sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    }

    void textBecomesOneLineOfPlainText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("line");
        QTest::newRow("plain") << u"A film (2019)"_s << u"A film (2019)"_s;
        QTest::newRow("markup") << u"<b>a</b> &amp;"_s << u"<b>a</b> &amp;"_s;
        QTest::newRow("carriage return and newline") << u"a\r\nb"_s << u"a b"_s;
        QTest::newRow("tabulator and zero") << u"a\tb"_s + QChar(u'\0') + u"c"_s << u"a b c"_s;
        QTest::newRow("bell and escape") << u"a\u0007\u001bb"_s << u"a  b"_s;
        QTest::newRow("next line") << u"a\u0085b"_s << u"a b"_s;
        QTest::newRow("line separator") << u"a\u2028b"_s << u"a b"_s;
        QTest::newRow("paragraph separator") << u"a\u2029b"_s << u"a b"_s;
        // Such a character would make "exe.srt" of "trs.exe".
        QTest::newRow("reordering") << u"film\u202etrs.exe\u202c"_s << u"filmtrs.exe"_s;
        QTest::newRow("all that reorder") << u"a\u202a\u202b\u202d\u2066\u2067\u2068\u2069b"_s << u"ab"_s;
        // A mark that is part of good spelling stays.
        QTest::newRow("Hebrew") << u"\u05e9\u05dc\u05d5 2019\u200f"_s << u"\u05e9\u05dc\u05d5 2019\u200f"_s;
        QTest::newRow("neighbours of those left out")
            << u"\u2029\u202f\u2065\u206a"_s << u" \u202f\u2065\u206a"_s;
        QTest::newRow("as long as is shown") << QString(1000, u'x') << QString(1000, u'x');
        QTest::newRow("endless") << QString(1'000'000, u'x') + u"end"_s
                                 << QString(500, u'x') + QChar(0x2026) + QString(497, u'x') + u"end"_s;
    }
    void textBecomesOneLineOfPlainText()
    {
        QFETCH(QString, text);
        QFETCH(QString, line);
        QCOMPARE(ui::Label::singleLine(text), line);
        ui::Label label;
        label.setText(text);
        QCOMPARE(label.text(), text); // the text itself is kept
        QCOMPARE(drawnText(text, Qt::ElideNone), drawnText(line, Qt::ElideNone));
        // A stripped ampersand would be a mnemonic.
        QVERIFY(drawnText(u'&' + text, Qt::ElideNone) != drawnText(text, Qt::ElideNone));
    }

    void textThatDoesNotFitIsElided()
    {
        const QString text = u"A very long name that does not fit into its place at all"_s;
        QCOMPARE(drawnText(text + u" one"_s, Qt::ElideRight), drawnText(text + u" two"_s, Qt::ElideRight));
        const QString middle(60, u'm');
        const auto drawn = [&](const QString &end) {
            return drawnText(u"A"_s + middle + end, Qt::ElideMiddle);
        };
        QVERIFY(drawn(u"Z"_s) != drawn(u"Y"_s));
        QVERIFY(drawn(u"Z"_s) != drawnText(u"B"_s + middle + u"Z"_s, Qt::ElideMiddle));
        QCOMPARE(drawn(u"i"_s + middle + u"Z"_s), drawn(u"Z"_s));
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
            QCOMPARE(image.copy(0, 0, 48, 30), painted({48, 30}, [](QPainter &) {}));
            QCOMPARE(image.copy(152, 0, 48, 30), painted({48, 30}, [](QPainter &) {}));
        }
    }

    void alignmentIsThatOfTheInterface()
    {
        ui::Label label;
        label.setText(u"\u05e9\u05dc\u05d5\u05dd"_s); // from right to left, it stays on the left
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
            return painted({60, 20},
                           [&](QPainter &painter) {
                               label.draw(painter, {0, 0, 60, 20}, label.palette());
                           })
                .pixelColor(20, 10);
        };
        QVERIFY(isNear(ink(), Qt::black, 40));
        label.setRole(ui::Label::TextRole::Secondary);
        QVERIFY(isNear(ink(), QColor(0x80, 0, 0), 40));
    }

    void readsAsStaticTextUnlessItIsNamed()
    {
        ui::Label label;
        label.setText(u"A film\n(2019)"_s);
        const auto *accessible = QAccessible::queryAccessibleInterface(&label);
        QVERIFY(accessible);
        QCOMPARE(accessible->role(), QAccessible::StaticText);
        QCOMPARE(accessible->text(QAccessible::Name), u"A film\n(2019)"_s);
        label.setAccessibleName(u"Title"_s);
        QCOMPARE(accessible->text(QAccessible::Name), u"Title"_s);
    }

    void changesAreShown()
    {
        ui::Label label;
        label.resize(120, 30);
        PaintCounter paints(label);
        label.show();
        QTRY_VERIFY(paints.count > 0);
        const QImage empty = label.grab().toImage();
        const std::function<void()> changes[] = {[&] { label.setText(u"Something"_s); },
                                                 [&] { label.setElideMode(Qt::ElideLeft); },
                                                 [&] { label.setAlignment(Qt::AlignRight); },
                                                 [&] { label.setRole(ui::Label::TextRole::Secondary); }};
        for (const auto &change : changes) {
            paints.count = 0;
            change();
            QTRY_COMPARE(paints.count, 1);
        }
        QVERIFY(label.grab().toImage() != empty);
    }
};

PLOVENDIX_GUI_TEST(LabelTest)
#include "LabelTest.moc"
