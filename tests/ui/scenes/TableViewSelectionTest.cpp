#include "TableFixture.h"
#include <tests/ui/views/Painted.h>

#include <tests/support/TestMain.h>

class TableViewSelectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void selectionIsAnnouncedOncePerChange()
    {
        TableFixture fixture(5);
        QCOMPARE(fixture.table.selectedRow(), -1);
        fixture.table.selectRow(5); // not there
        fixture.table.selectRow(-1);
        QCOMPARE(fixture.table.numberOfSelectedRows(), 0);
        fixture.table.selectRow(2);
        fixture.table.selectRow(2);
        QCOMPARE(fixture.table.numberOfSelectedRows(), 1);
        fixture.table.selectRow(4);
        PaintCounter paints(*fixture.table.viewport());
        fixture.table.deselectAll();
        QTRY_VERIFY(paints.count > 0);
        fixture.table.deselectAll();
        QCOMPARE(fixture.selections, QList<int>({2, 4, -1}));
        QCOMPARE(fixture.table.numberOfSelectedRows(), 0);
    }

    void clickSelectsARow()
    {
        TableFixture fixture(4);
        fixture.click(1);
        QCOMPARE(fixture.table.selectedRow(), 1);
        fixture.click(3);
        fixture.click(2, Qt::ShiftModifier); // never more than one
        QCOMPARE(fixture.table.numberOfSelectedRows(), 1);
        fixture.click(2, Qt::ControlModifier);
        fixture.click(0);
        QTest::mouseClick(fixture.table.viewport(), Qt::LeftButton, {}, {100, 350}); // beside the rows
        fixture.click(0);
        QTest::mouseClick(fixture.table.viewport(), Qt::LeftButton, Qt::ControlModifier, {100, 350});
        QCOMPARE(fixture.selections, QList<int>({1, 3, 2, -1, 0, -1, 0, -1}));
    }

    void reloadKeepsTheSelectionWhereThereIsSuchARow_data()
    {
        QTest::addColumn<int>("selected");
        QTest::addColumn<int>("rows");
        QTest::addColumn<QList<int>>("selections");
        QTest::newRow("fewer rows") << 2 << 3 << QList<int>{2};
        QTest::newRow("more rows") << 2 << 300 << QList<int>{2};
        QTest::newRow("no such row") << 2 << 2 << QList<int>{2, -1};
        QTest::newRow("no rows") << 2 << 0 << QList<int>{2, -1};
        QTest::newRow("no selection") << -1 << 0 << QList<int>{};
    }
    void reloadKeepsTheSelectionWhereThereIsSuchARow()
    {
        QFETCH(int, selected);
        QFETCH(int, rows);
        QFETCH(QList<int>, selections);
        TableFixture fixture(5);
        fixture.table.selectRow(selected);
        fixture.reload(rows);
        QCOMPARE(fixture.selections, selections);
        QCOMPARE(fixture.table.selectedRow(), selections.value(selections.size() - 1, -1));
        QCOMPARE(fixture.table.currentIndex().row(), fixture.table.selectedRow());
        fixture.table.reloadData();
        QCOMPARE(fixture.selections, selections); // announced once
    }

    void tableWithoutDelegateOrSourceIsEmpty()
    {
        TableFixture fixture(3);
        fixture.table.setDelegate(nullptr);
        fixture.table.selectRow(1);
        fixture.table.grab();
        QVERIFY(!fixture.table.model()->index(1, 0).data().isValid());
        fixture.table.setDataSource(nullptr);
        fixture.table.reloadData();
        QCOMPARE(fixture.table.numberOfRows(), 0);
        QCOMPARE(fixture.selections, QList<int>());
    }

    void keysMoveTheSelection()
    {
        TableFixture fixture(100);
        fixture.table.selectRow(10);
        const std::pair<Qt::Key, int> steps[] = {
            {Qt::Key_Down, 11}, {Qt::Key_Up, 10},  {Qt::Key_PageDown, 14}, // five rows fit
            {Qt::Key_Home, 0},  {Qt::Key_End, 99}, {Qt::Key_PageUp, 95},
        };
        for (const auto &[key, row] : steps) {
            QTest::keyClick(&fixture.table, key);
            QCOMPARE(fixture.table.selectedRow(), row);
            const QRect place = fixture.table.visualRect(fixture.table.model()->index(row, 0));
            QVERIFY(fixture.table.viewport()->rect().contains(place)); // scrolled along
        }
        QCOMPARE(fixture.selections.size(), 7);
    }

    void firstArrowSelectsTheCurrentRow()
    {
        TableFixture fixture(20);
        QTest::keyClick(&fixture.table, Qt::Key_Down);
        QTest::keyClick(&fixture.table, Qt::Key_Down);
        QCOMPARE(fixture.selections, QList<int>({0, 1}));
        fixture.table.deselectAll();
        QTest::keyClick(&fixture.table, Qt::Key_Up);
        QCOMPARE(fixture.table.selectedRow(), 1);
        QTest::keyClick(&fixture.table, Qt::Key_H); // typing finds a row by its text
        QCOMPARE(fixture.table.selectedRow(), 7);
    }

    void returnTriggersTheDoubleActionWithItsModifiers()
    {
        TableFixture fixture(5);
        QTest::keyClick(&fixture.table, Qt::Key_Return); // without a selection
        fixture.table.selectRow(1);
        QList<Qt::KeyboardModifiers> seen;
        connect(&fixture.table, &TableView::doubleActionTriggered, &fixture.table,
                [&] { seen += QGuiApplication::keyboardModifiers(); });
        const Qt::KeyboardModifiers passedOn[] = {Qt::NoModifier, Qt::KeypadModifier, Qt::AltModifier,
                                                  Qt::AltModifier | Qt::ShiftModifier};
        for (const auto modifiers : passedOn) {
            const auto key = modifiers == Qt::KeypadModifier ? Qt::Key_Enter : Qt::Key_Return;
            QTest::keyClick(&fixture.table, key, modifiers);
        }
        QTest::keyClick(&fixture.table, Qt::Key_F5);
        QCOMPARE(seen, QList<Qt::KeyboardModifiers>(std::begin(passedOn), std::end(passedOn)));

        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
        QKeyEvent withControl(QEvent::KeyPress, Qt::Key_Return, Qt::ControlModifier);
        QKeyEvent withMeta(QEvent::KeyPress, Qt::Key_Return, Qt::MetaModifier);
        for (QKeyEvent *event : {&held, &withControl, &withMeta})
            QCoreApplication::sendEvent(&fixture.table, event);
        QCOMPARE(fixture.doubleActions, 4);
        QVERIFY(held.isAccepted());
        QVERIFY(!withControl.isAccepted() && !withMeta.isAccepted()); // left to the window
    }

    void doubleClickTriggersOnASelectedRow()
    {
        TableFixture fixture(2);
        QWidget *rows = fixture.table.viewport();
        fixture.click(1);
        QTest::mouseDClick(rows, Qt::LeftButton, {}, fixture.middleOf(1));
        QCOMPARE(fixture.doubleActions, 1);
        QCOMPARE(fixture.table.selectedRow(), 1);
        QTest::mouseDClick(rows, Qt::RightButton, {}, fixture.middleOf(1));
        QCOMPARE(fixture.doubleActions, 1);
        QTest::mouseDClick(rows, Qt::LeftButton, {}, {100, 300});
        QCOMPARE(fixture.doubleActions, 1);
    }

    void reloadInTheActionIsSafe()
    {
        TableFixture fixture(5);
        fixture.table.selectRow(1);
        connect(&fixture.table, &TableView::doubleActionTriggered, &fixture.table,
                [&] { fixture.reload(0); });
        QTest::mouseDClick(fixture.table.viewport(), Qt::LeftButton, {}, fixture.middleOf(1));
        QCOMPARE(fixture.table.numberOfRows(), 0);
        QCOMPARE(fixture.selections, QList<int>({1, -1}));
    }
};

PLOVENDIX_GUI_TEST(TableViewSelectionTest)
#include "TableViewSelectionTest.moc"
