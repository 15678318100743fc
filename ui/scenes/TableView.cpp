#include "TableView.h"
#include "Storyboard.h"
#include <ui/controls/TableCellView.h>
#include "TableModel.h"
#include "TableRowPainter.h"

#include <QHash>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include <algorithm>

namespace
{
constexpr int ScrollStepPoints = 30;
} // namespace

class TableView::Private
{
public:
    explicit Private(TableView *table) : model(new Model(table)), painter(new Painter(table)) {}

    Model *model;
    Painter *painter;
    TableViewDataSource *dataSource = nullptr;
    TableViewDelegate *delegate = nullptr;
    QString cellStoryboard;
    QHash<QString, TableCellView *> cells; // children of the table
    bool keepsQuiet = false;               // while a reload takes the selection along
};

TableView::TableView(QWidget *parent) : QListView(parent), d(std::make_unique<Private>(this))
{
    setModel(d->model);
    setItemDelegate(d->painter);
    setUniformItemSizes(true);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    verticalScrollBar()->setSingleStep(ScrollStepPoints);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(NoFrame);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

TableView::~TableView() = default;

void TableView::setDataSource(TableViewDataSource *dataSource)
{
    d->dataSource = dataSource;
}

void TableView::setDelegate(TableViewDelegate *delegate)
{
    d->delegate = delegate;
    d->model->setDelegate(delegate);
    d->painter->setDelegate(delegate);
}

int TableView::rowHeight() const
{
    return d->painter->rowHeight();
}

void TableView::setRowHeight(int points)
{
    d->painter->setRowHeight(points);
    scheduleDelayedItemsLayout();
}

QString TableView::cellStoryboard() const
{
    return d->cellStoryboard;
}

void TableView::setCellStoryboard(const QString &storyboard)
{
    d->cellStoryboard = storyboard;
}

TableCellView *TableView::makeView(const QString &identifier)
{
    if (TableCellView *known = d->cells.value(identifier))
        return known;
    if (d->cellStoryboard.isEmpty())
        return nullptr;
    auto made = Storyboard::named(d->cellStoryboard).makeCell(identifier);
    if (!made)
        return nullptr;
    // A child for its palette and font, but never shown.
    TableCellView *cell = made.release();
    cell->setParent(this);
    cell->hide();
    d->cells.insert(identifier, cell);
    return cell;
}

int TableView::numberOfRows() const
{
    return d->model->rowCount();
}

int TableView::selectedRow() const
{
    const auto rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

int TableView::numberOfSelectedRows() const
{
    return int(selectionModel()->selectedRows().size());
}

void TableView::selectRow(int row)
{
    const QModelIndex index = d->model->index(row, 0);
    if (index.isValid())
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
}

void TableView::deselectAll()
{
    selectionModel()->clearSelection();
}

void TableView::reloadData()
{
    const int row = selectedRow();
    const int scrolled = verticalScrollBar()->value();
    d->keepsQuiet = true;
    d->model->reset(d->dataSource ? d->dataSource->numberOfRowsInTableView() : 0);
    selectRow(row);
    d->keepsQuiet = false;
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(scrolled);
    if (row >= 0 && selectedRow() < 0 && d->delegate)
        d->delegate->tableViewSelectionDidChange();
}

void TableView::scrollRowToVisible(int row)
{
    if (const QModelIndex index = d->model->index(row, 0); index.isValid())
        scrollTo(index, EnsureVisible);
}

void TableView::keyPressEvent(QKeyEvent *event)
{
    const bool isArrow = event->key() == Qt::Key_Down || event->key() == Qt::Key_Up;
    if (isArrow && numberOfSelectedRows() == 0)
        return selectRow(std::max(0, currentIndex().row())); // the first step selects, the next ones move
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn)
        return QListView::keyPressEvent(event);
    // Alt and Shift are passed on; a held key triggers once.
    const bool meant = !(event->modifiers() & (Qt::ControlModifier | Qt::MetaModifier));
    if (!meant || numberOfSelectedRows() == 0)
        return event->ignore();
    event->accept();
    if (!event->isAutoRepeat())
        Q_EMIT doubleActionTriggered();
}

void TableView::mousePressEvent(QMouseEvent *event)
{
    QListView::mousePressEvent(event);
    if (event->button() == Qt::LeftButton && !indexAt(event->position().toPoint()).isValid())
        deselectAll();
}

void TableView::mouseDoubleClickEvent(QMouseEvent *event)
{
    QListView::mouseDoubleClickEvent(event);
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && index.isValid() && selectionModel()->isSelected(index))
        Q_EMIT doubleActionTriggered();
}

void TableView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QListView::selectionChanged(selected, deselected);
    if (!d->keepsQuiet && d->delegate)
        d->delegate->tableViewSelectionDidChange();
}
