#include "TableFixture.h"

#include <tests/support/TestMain.h>

class TableViewSelectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsSelectedAtFirst()
    {
        const TableFixture fixture(5);
        QCOMPARE(fixture.table.selectedRow(), -1);
        QCOMPARE(fixture.table.numberOfSelectedRows(), 0);
        QCOMPARE(fixture.table.numberOfRows(), 5);
        QCOMPARE(fixture.selections, QList<int>());
    }

    void selectionIsToldOncePerChange()
    {
        TableFixture fixture(5);
        fixture.table.selectRow(2);
        QCOMPARE(fixture.selections, QList<int>({2}));
        QCOMPARE(fixture.table.numberOfSelectedRows(), 1);
        fixture.table.selectRow(2);
        QCOMPARE(fixture.selections, QList<int>({2}));
        fixture.table.selectRow(4);
        QCOMPARE(fixture.selections, QList<int>({2, 4}));
        fixture.table.deselectAll();
        QCOMPARE(fixture.selections, QList<int>({2, 4, -1}));
        QCOMPARE(fixture.table.numberOfSelectedRows(), 0);
        fixture.table.deselectAll();
        QCOMPARE(fixture.selections, QList<int>({2, 4, -1}));
    }

    void rowsThatAreNotThereCannotBeSelected()
    {
        TableFixture fixture(5);
        fixture.table.selectRow(5);
        fixture.table.selectRow(-1);
        QCOMPARE(fixture.table.selectedRow(), -1);
        QCOMPARE(fixture.selections, QList<int>());
    }

    void clickSelectsARow()
    {
        TableFixture fixture(5);
        fixture.click(1);
        QCOMPARE(fixture.table.selectedRow(), 1);
        fixture.click(3);
        QCOMPARE(fixture.selections, QList<int>({1, 3}));
        fixture.click(2, Qt::ShiftModifier); // never more than one
        QCOMPARE(fixture.table.numberOfSelectedRows(), 1);
        fixture.click(2, Qt::ControlModifier);
        QCOMPARE(fixture.table.selectedRow(), -1);
        QCOMPARE(fixture.selections, QList<int>({1, 3, 2, -1}));
    }

    void clickBesideTheRowsDeselects()
    {
        TableFixture fixture(2);
        fixture.click(1);
        QTest::mouseClick(fixture.table.viewport(), Qt::LeftButton, {}, {100, 300});
        QCOMPARE(fixture.selections, QList<int>({1, -1}));
    }

    void selectionSurvivesAReloadByRow()
    {
        TableFixture fixture(5);
        fixture.table.selectRow(2);
        fixture.rows = 3;
        fixture.table.reloadData();
        QCOMPARE(fixture.table.selectedRow(), 2);
        fixture.rows = 300;
        fixture.table.reloadData();
        QCOMPARE(fixture.table.selectedRow(), 2);
        QCOMPARE(fixture.table.currentIndex().row(), 2);
        QCOMPARE(fixture.selections, QList<int>({2}));
    }

    void selectionOfARowThatIsGoneIsDroppedAndToldOnce()
    {
        TableFixture fixture(5);
        fixture.table.selectRow(2);
        fixture.rows = 2;
        fixture.table.reloadData();
        QCOMPARE(fixture.selections, QList<int>({2, -1}));
        QCOMPARE(fixture.table.numberOfSelectedRows(), 0);
        fixture.rows = 0;
        fixture.table.reloadData();
        QCOMPARE(fixture.selections, QList<int>({2, -1}));
    }

    void reloadWithoutASelectionTellsNothing()
    {
        TableFixture fixture(5);
        fixture.rows = 0;
        fixture.table.reloadData();
        fixture.rows = 7;
        fixture.table.reloadData();
        QCOMPARE(fixture.table.numberOfRows(), 7);
        QCOMPARE(fixture.selections, QList<int>());
    }

    void tableWithoutDelegateOrSourceIsEmpty()
    {
        TableView table;
        table.reloadData();
        table.resize(100, 100);
        table.show();
        table.selectRow(0);
        table.deselectAll();
        QCOMPARE(table.numberOfRows(), 0);

        TableFixture fixture(3);
        fixture.table.setDelegate(nullptr);
        fixture.table.selectRow(1);
        fixture.table.grab();
        fixture.table.setDataSource(nullptr);
        fixture.table.reloadData();
        QCOMPARE(fixture.table.numberOfRows(), 0);
        QCOMPARE(fixture.selections, QList<int>());
    }

    void keysMoveTheSelection_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::newRow("Down") << Qt::Key_Down << 10 << 11;
        QTest::newRow("Up") << Qt::Key_Up << 10 << 9;
        QTest::newRow("Down at the end") << Qt::Key_Down << 99 << 99;
        QTest::newRow("Up at the beginning") << Qt::Key_Up << 0 << 0;
        QTest::newRow("Home") << Qt::Key_Home << 10 << 0;
        QTest::newRow("End") << Qt::Key_End << 10 << 99;
        QTest::newRow("Page Down") << Qt::Key_PageDown << 10 << 14; // five rows fit
        QTest::newRow("Page Up") << Qt::Key_PageUp << 10 << 6;
    }

    void keysMoveTheSelection()
    {
        QFETCH(Qt::Key, key);
        QFETCH(int, from);
        QFETCH(int, to);
        TableFixture fixture(100);
        fixture.table.selectRow(from);
        QTest::keyClick(&fixture.table, key);
        QCOMPARE(fixture.table.selectedRow(), to);
        const QRect row = fixture.table.visualRect(fixture.table.model()->index(to, 0));
        QVERIFY(fixture.table.viewport()->rect().contains(row)); // scrolled along
        QCOMPARE(fixture.selections.size(), from == to ? 1 : 2);
    }

    void firstArrowSelectsTheFirstRow()
    {
        TableFixture fixture(5);
        QVERIFY(QTest::qWaitForWindowActive(&fixture.table));
        fixture.table.setFocus();
        QTest::keyClick(&fixture.table, Qt::Key_Down);
        QCOMPARE(fixture.selections, QList<int>({0}));
        QTest::keyClick(&fixture.table, Qt::Key_Down);
        QCOMPARE(fixture.selections, QList<int>({0, 1}));
    }

    void arrowAfterDeselectingTakesTheRowUpAgain()
    {
        TableFixture fixture(5);
        fixture.table.selectRow(3);
        fixture.table.deselectAll();
        QTest::keyClick(&fixture.table, Qt::Key_Up);
        QCOMPARE(fixture.table.selectedRow(), 3);
    }

    void typingFindsARow()
    {
        TableFixture fixture(20);
        QTest::keyClick(&fixture.table, Qt::Key_H);
        QCOMPARE(fixture.table.selectedRow(), 7);
    }

    void returnTriggersTheDoubleAction_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<int>("actions");
        using Modifiers = Qt::KeyboardModifiers;
        QTest::newRow("Return") << Qt::Key_Return << Modifiers() << 1;
        QTest::newRow("Enter") << Qt::Key_Enter << Modifiers(Qt::KeypadModifier) << 1;
        QTest::newRow("Alt+Return") << Qt::Key_Return << Modifiers(Qt::AltModifier) << 1;
        QTest::newRow("Alt+Shift+Return") << Qt::Key_Return << (Qt::AltModifier | Qt::ShiftModifier) << 1;
        QTest::newRow("Ctrl+Return") << Qt::Key_Return << Modifiers(Qt::ControlModifier) << 0;
        QTest::newRow("another key") << Qt::Key_F5 << Modifiers() << 0;
    }

    void returnTriggersTheDoubleAction()
    {
        QFETCH(Qt::Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(int, actions);
        TableFixture fixture(5);
        fixture.table.selectRow(1);
        Qt::KeyboardModifiers seen;
        connect(&fixture.table, &TableView::doubleActionTriggered, &fixture.table,
                [&] { seen = QGuiApplication::keyboardModifiers(); });
        QTest::keyClick(&fixture.table, key, modifiers);
        QCOMPARE(fixture.doubleActions, actions);
        if (actions > 0)
            QCOMPARE(seen & ~Qt::KeypadModifier, modifiers & ~Qt::KeypadModifier);
    }

    void returnWithoutASelectionDoesNothing()
    {
        TableFixture fixture(5);
        QTest::keyClick(&fixture.table, Qt::Key_Return);
        QCOMPARE(fixture.doubleActions, 0);
    }

    void heldReturnTriggersOnce()
    {
        TableFixture fixture(5);
        fixture.table.selectRow(1);
        QTest::keyPress(&fixture.table, Qt::Key_Return);
        for (int repeat = 0; repeat < 3; ++repeat) {
            QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
            QCoreApplication::sendEvent(&fixture.table, &again);
        }
        QCOMPARE(fixture.doubleActions, 1);
    }

    void doubleClickTriggersOnARowOnly()
    {
        TableFixture fixture(2);
        fixture.click(1);
        QTest::mouseDClick(fixture.table.viewport(), Qt::LeftButton, {}, fixture.middleOf(1));
        QCOMPARE(fixture.doubleActions, 1);
        QCOMPARE(fixture.table.selectedRow(), 1);
        QTest::mouseDClick(fixture.table.viewport(), Qt::LeftButton, {}, {100, 300});
        QCOMPARE(fixture.doubleActions, 1);
    }

    void doubleClickOfAnotherButtonDoesNothing()
    {
        TableFixture fixture(2);
        fixture.click(1);
        QTest::mouseDClick(fixture.table.viewport(), Qt::RightButton, {}, fixture.middleOf(1));
        QCOMPARE(fixture.doubleActions, 0);
    }

    void selectionMayBeChangedInTheAnswer()
    {
        TableFixture fixture(5);
        fixture.table.selectRow(1);
        connect(&fixture.table, &TableView::doubleActionTriggered, &fixture.table, [&] {
            fixture.rows = 0;
            fixture.table.reloadData();
        });
        QTest::mouseDClick(fixture.table.viewport(), Qt::LeftButton, {}, fixture.middleOf(1));
        QCOMPARE(fixture.table.numberOfRows(), 0);
        QCOMPARE(fixture.selections, QList<int>({1, -1}));
    }
};

PLOVENDIX_GUI_TEST(TableViewSelectionTest)
#include "TableViewSelectionTest.moc"
