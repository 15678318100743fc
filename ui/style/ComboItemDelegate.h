#pragma once
#include <QStyledItemDelegate>

/// Draws the list of a combo box like a menu. Knows the combo box's separators.
class ComboItemDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &plain, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &plain, const QModelIndex &index) const override;
};
