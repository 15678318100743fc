#include "TableRowPainter.h"
#include <ui/controls/TableCellView.h>

#include <QPainter>

namespace
{
// A faint tint keeps the colours of the texts readable. A dark background needs a stronger one.
constexpr qreal LightTint = 0.135;
constexpr qreal DarkTint = 0.185;
constexpr qreal LineStrength = 0.07;
constexpr int DarkLightness = 128;

QColor withAlpha(QColor color, qreal alpha)
{
    color.setAlphaF(float(alpha));
    return color;
}

QColor selectionTint(const QPalette &palette)
{
    const bool dark = palette.color(QPalette::Base).lightness() < DarkLightness;
    return withAlpha(palette.color(QPalette::Active, QPalette::Highlight), dark ? DarkTint : LightTint);
}
} // namespace

void TableView::RowPainter::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                  const QModelIndex &index) const
{
    const QRect row = option.rect;
    painter->save();
    if (option.state.testFlag(QStyle::State_Selected))
        painter->fillRect(row, selectionTint(option.palette));
    TableViewDelegate *delegate = m_table.m_delegate;
    if (TableCellView *cell = delegate ? delegate->tableViewViewForRow(index.row()) : nullptr)
        cell->draw(*painter, row);
    painter->fillRect(QRect(row.left(), row.bottom(), row.width(), 1),
                      withAlpha(option.palette.color(QPalette::Text), LineStrength));
    painter->restore();
}

QSize TableView::RowPainter::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    // The view makes its rows as wide as itself.
    return {1, m_table.rowHeight()};
}
