#pragma once
#include <ui/controls/Label.h>
#include <ui/controls/TableCellView.h>
#include <ui/scenes/Storyboard.h>
#include <ui/scenes/TableView.h>
#include <ui/views/ImageView.h>

#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>

/// A cell with one label, as the tests' storyboard makes it.
class OneLabelCell final : public TableCellView
{
public:
    OneLabelCell()
    {
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(&label);
    }
    ui::Label label;
};

/// A table of some rows in a window of 400 by 400, with the rows it asked for and the selections it
/// announced.
class TableFixture final : public TableViewDataSource, public TableViewDelegate
{
public:
    explicit TableFixture(int initialRows = 0) : rows(initialRows)
    {
        Storyboard::registerCell(QStringLiteral("TableTest"), QStringLiteral("RowID"),
                                 [] { return std::make_unique<OneLabelCell>(); });
        table.setCellStoryboard(QStringLiteral("TableTest"));
        table.setRowHeight(80);
        table.setDataSource(this);
        table.setDelegate(this);
        table.resize(400, 400);
        table.reloadData();
        table.show();
        QObject::connect(&table, &TableView::doubleActionTriggered, &table, [this] { ++doubleActions; });
    }

    int numberOfRowsInTableView() override { return rows; }

    TableCellView *tableViewViewForRow(int row) override
    {
        asked += row;
        if (!hasCells)
            return nullptr;
        auto *cell = static_cast<OneLabelCell *>(table.makeView(QStringLiteral("RowID")));
        cell->label.setText(tableViewAccessibleTextForRow(row));
        return cell;
    }

    QString tableViewAccessibleTextForRow(int row) override
    {
        ++texts;
        return QStringLiteral("%1 row %2").arg(QChar(u'a' + row % 26)).arg(row);
    }

    void tableViewSelectionDidChange() override { selections += table.selectedRow(); }

    void reload(int count)
    {
        rows = count;
        table.reloadData();
    }
    int scrolled() const { return table.verticalScrollBar()->value(); }
    QPoint middleOf(int row) const { return table.visualRect(table.model()->index(row, 0)).center(); }
    void click(int row, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(table.viewport(), Qt::LeftButton, modifiers, middleOf(row));
    }

    int rows;
    bool hasCells = true;
    int doubleActions = 0;
    int texts = 0;
    QList<int> asked;
    QList<int> selections; // the row at each change
    TableView table;
};
