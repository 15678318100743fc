#include <tests/ui/views/Painted.h>
#include "TableFixture.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QAccessible>
#include <QScrollBar>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace
{
/// Which of the first three rows hold anything dark.
QList<bool> inkedRows(TableView &table)
{
    const QImage image = table.grab().toImage();
    return {hasInk(image, {0, 0, 400, 78}), hasInk(image, {0, 80, 400, 78}),
            hasInk(image, {0, 160, 400, 78})};
}
} // namespace

class TableViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QPalette palette;
        palette.setColor(QPalette::Base, Qt::white);
        palette.setColor(QPalette::Highlight, QColor(0x2f, 0x6f, 0xde));
        QApplication::setPalette(palette);
    }

    void rowsAreThoseOfTheLastReload()
    {
        TableFixture fixture(3);
        fixture.rows = 50;
        fixture.asked.clear();
        fixture.table.grab();
        QCOMPARE(fixture.table.numberOfRows(), 3);
        QCOMPARE(fixture.asked, QList<int>({0, 1, 2}));
        fixture.table.reloadData();
        QCOMPARE(fixture.table.numberOfRows(), 50);
    }

    void oneHiddenCellServesEveryRow()
    {
        TableFixture fixture;
        fixture.table.hide();
        TableCellView *cell = fixture.table.makeView(u"RowID"_s);
        QVERIFY(cell);
        fixture.reload(5);
        fixture.table.show();
        QVERIFY(!cell->isVisible());
        QCOMPARE(fixture.table.makeView(u"RowID"_s), cell);
        QCOMPARE(fixture.table.findChildren<TableCellView *>().size(), 1);
        QCOMPARE(fixture.table.makeView(u"NoSuchID"_s), nullptr);
        TableView other;
        QCOMPARE(other.makeView(u"RowID"_s), nullptr);
        other.setCellStoryboard(u"NoSuchStoryboard"_s);
        QCOMPARE(other.cellStoryboard(), u"NoSuchStoryboard"_s);
        QVERIFY(faultOf([&] { other.makeView(u"RowID"_s); }).contains(u"NoSuchStoryboard"_s));
    }

    void rowsHaveTheirHeight()
    {
        TableFixture fixture(5);
        QCOMPARE(fixture.table.visualRect(fixture.table.model()->index(2, 0)), QRect(0, 160, 400, 80));
        fixture.table.setRowHeight(50);
        QCOMPARE(fixture.table.rowHeight(), 50);
        QTRY_COMPARE(fixture.table.visualRect(fixture.table.model()->index(2, 0)), QRect(0, 100, 400, 50));
    }

    void cellsAreDrawnInTheirRows()
    {
        TableFixture fixture(2);
        fixture.hasCells = false;
        QCOMPARE(inkedRows(fixture.table), QList<bool>({false, false, false}));
        fixture.hasCells = true;
        QCOMPARE(inkedRows(fixture.table), QList<bool>({true, true, false}));
    }

    void selectedRowIsTinted_data()
    {
        QTest::addColumn<QColor>("base");
        QTest::addColumn<QColor>("highlight");
        QTest::addColumn<QColor>("tint");
        QTest::newRow("light") << QColor(Qt::white) << QColor(0x2f, 0x6f, 0xde) << QColor(0xe3, 0xec, 0xfb);
        QTest::newRow("dark") << QColor(0x20, 0x22, 0x26) << QColor(0x4c, 0x8d, 0xff)
                              << QColor(0x28, 0x36, 0x4e);
    }

    void selectedRowIsTinted()
    {
        QFETCH(QColor, base);
        QFETCH(QColor, highlight);
        QFETCH(QColor, tint);
        QPalette palette;
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::Highlight, highlight);
        QApplication::setPalette(palette);
        TableFixture fixture(3);
        fixture.table.selectRow(1);
        const QImage image = fixture.table.grab().toImage();
        QVERIFY2(isNear(image.pixelColor(380, 120), tint, 2), qPrintable(image.pixelColor(380, 120).name()));
        QCOMPARE(image.pixelColor(380, 300), base);
        // A fine line parts the rows.
        QCOMPARE(image.pixelColor(380, 78), base);
        QVERIFY(image.pixelColor(380, 79) != base);
        QVERIFY(isNear(image.pixelColor(380, 80), tint, 2));
    }

    void rowIsScrolledIntoView()
    {
        TableFixture fixture(50);
        fixture.table.scrollRowToVisible(20);
        QCOMPARE(fixture.scrolled(), 16 * 80); // the row is the last of five that are seen
        for (const int row : {20, -1, 50})
            fixture.table.scrollRowToVisible(row);
        QCOMPARE(fixture.scrolled(), 16 * 80);
    }

    void reloadKeepsTheScrollPosition()
    {
        TableFixture fixture(50);
        fixture.table.selectRow(0);
        fixture.table.verticalScrollBar()->setValue(1234);
        fixture.reload(50);
        QCOMPARE(fixture.scrolled(), 1234);
        fixture.reload(6);
        QCOMPARE(fixture.scrolled(), 80); // as far as there are rows
        fixture.reload(0);
        fixture.reload(50);
        QCOMPARE(fixture.scrolled(), 0);
    }

    void scrollingIsByPoints()
    {
        TableFixture fixture(50);
        QWheelEvent wheel({50, 50}, fixture.table.mapToGlobal(QPointF(50, 50)), {0, -7}, {0, -14},
                          Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(fixture.table.viewport(), &wheel);
        QVERIFY(fixture.scrolled() > 0 && fixture.scrolled() < 40);
    }

    void rowsAreReadOut()
    {
        TableFixture fixture(5);
        fixture.table.selectRow(2);
        auto *list = QAccessible::queryAccessibleInterface(&fixture.table);
        QVERIFY(list && list->tableInterface());
        auto *row = list->tableInterface()->cellAt(2, 0);
        QVERIFY(row);
        QCOMPARE(row->text(QAccessible::Name), u"c row 2"_s);
        QVERIFY(row->state().selected);
    }

    void hundredThousandRowsAreNotTouchedOneByOne()
    {
        TableFixture fixture(100'000);
        fixture.asked.clear();
        fixture.texts = 0;
        fixture.table.reloadData();
        fixture.table.scrollRowToVisible(99'999);
        fixture.table.grab();
        fixture.table.verticalScrollBar()->setValue(4'000'000);
        fixture.table.grab();
        QVERIFY(fixture.asked.contains(99'999) && fixture.asked.contains(50'000));
        QVERIFY2(fixture.asked.size() <= 30, qPrintable(QString::number(fixture.asked.size())));
        QVERIFY2(fixture.texts <= 30, qPrintable(QString::number(fixture.texts)));
    }
};

PLOVENDIX_GUI_TEST(TableViewTest)
#include "TableViewTest.moc"
