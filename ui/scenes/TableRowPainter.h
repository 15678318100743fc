#pragma once
#include "TableView.h"

#include <QStyledItemDelegate>

/// Draws a row: the tint when it is selected, the cell filled by the delegate, and a fine line below.
class TableView::Painter final : public QStyledItemDelegate
{
public:
    explicit Painter(QObject *parent) : QStyledItemDelegate(parent) {}

    void setDelegate(TableViewDelegate *delegate) { m_delegate = delegate; }
    int rowHeight() const { return m_rowHeight; }
    void setRowHeight(int points) { m_rowHeight = points; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    TableViewDelegate *m_delegate = nullptr;
    int m_rowHeight = 80;
};
