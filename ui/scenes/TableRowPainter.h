#pragma once
#include "TableView.h"

#include <QStyledItemDelegate>

/// Draws a row: the tint when it is selected, the cell filled by the delegate, and a fine line below.
class TableView::RowPainter final : public QStyledItemDelegate
{
public:
    explicit RowPainter(TableView &table) : QStyledItemDelegate(&table), m_table(table) {}

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    TableView &m_table;
};
