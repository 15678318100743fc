#include "TableView.h"
#include "Storyboard.h"
#include <ui/controls/TableCellView.h>
#include "TableRowPainter.h"

#include <QAbstractListModel>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include <algorithm>

namespace
{
constexpr int ScrollStepPoints = 30;
} // namespace

/// The number of rows as of the last reload, and the accessible text of each.
class TableView::Model final : public QAbstractListModel
{
public:
    explicit Model(TableView &table) : QAbstractListModel(&table), m_table(table) {}

    void reset(int count)
    {
        beginResetModel();
        m_count = count;
        endResetModel();
    }

    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : m_count; }

    QVariant data(const QModelIndex &index, int role) const override
    {
        // The display role serves selection by typing.
        const bool isText = role == Qt::AccessibleTextRole || role == Qt::DisplayRole;
        if (!isText || !index.isValid() || !m_table.m_delegate)
            return {};
        return m_table.m_delegate->tableViewAccessibleTextForRow(index.row());
    }

private:
    TableView &m_table;
    int m_count = 0;
};

TableView::TableView(QWidget *parent) : QListView(parent), m_model(new Model(*this))
{
    setModel(m_model);
    setItemDelegate(new RowPainter(*this));
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

void TableView::setRowHeight(int points)
{
    m_rowHeight = points;
    scheduleDelayedItemsLayout();
}

TableCellView *TableView::makeView(const QString &identifier)
{
    if (TableCellView *known = m_cells.value(identifier))
        return known;
    if (m_cellStoryboard.isEmpty())
        return nullptr;
    auto made = Storyboard::named(m_cellStoryboard).makeCell(identifier);
    if (!made)
        return nullptr;
    // A child for its palette and font, but never shown.
    TableCellView *cell = made.release();
    cell->setParent(this);
    cell->hide();
    m_cells.insert(identifier, cell);
    return cell;
}

int TableView::numberOfRows() const
{
    return m_model->rowCount();
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
    const QModelIndex index = m_model->index(row, 0);
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
    m_isReloading = true;
    m_model->reset(m_dataSource ? m_dataSource->numberOfRowsInTableView() : 0);
    selectRow(row);
    m_isReloading = false;
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(scrolled);
    if (row >= 0 && selectedRow() < 0 && m_delegate)
        m_delegate->tableViewSelectionDidChange();
}

void TableView::scrollRowToVisible(int row)
{
    if (const QModelIndex index = m_model->index(row, 0); index.isValid())
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
    if (!m_isReloading && m_delegate)
        m_delegate->tableViewSelectionDidChange();
}
