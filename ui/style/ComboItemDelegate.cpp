#include "ComboItemDelegate.h"
#include "ChromeColors.h"
#include "ChromePainting.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace
{
constexpr int RowHeight = 26;
constexpr int SeparatorHeight = 9;
constexpr int GroundMargin = 3;
constexpr int GroundRadius = 5;
constexpr int TextMargin = 10;

bool isSeparator(const QModelIndex &index)
{
    // How QComboBox::insertSeparator marks them.
    return index.data(Qt::AccessibleDescriptionRole).toString() == u"separator"_s;
}
} // namespace

void ComboItemDelegate::paint(QPainter *painter, const QStyleOptionViewItem &plain,
                              const QModelIndex &index) const
{
    QStyleOptionViewItem option(plain);
    initStyleOption(&option, index);
    const ChromeColors colors = ChromeColors::of(option.palette);
    if (isSeparator(index)) {
        painter->fillRect(option.rect.x() + TextMargin, option.rect.center().y(),
                          option.rect.width() - 2 * TextMargin, 1, colors.border);
        return;
    }
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool selected = enabled && option.state & QStyle::State_Selected;
    if (selected)
        ChromePainting::fillRounded(*painter, option.rect.adjusted(GroundMargin, 1, -GroundMargin, -1),
                                    GroundRadius, colors.accent);
    painter->save();
    painter->setFont(option.font);
    painter->setPen(
        selected ? colors.accentText
                 : option.palette.color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::Text));
    const QRect textRect = option.rect.adjusted(TextMargin, 0, -TextMargin, 0);
    painter->drawText(
        textRect,
        static_cast<int>(QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter)) |
            Qt::TextSingleLine,
        painter->fontMetrics().elidedText(option.text, Qt::ElideRight, textRect.width()));
    painter->restore();
}

QSize ComboItemDelegate::sizeHint(const QStyleOptionViewItem &plain, const QModelIndex &index) const
{
    if (isSeparator(index))
        return {0, SeparatorHeight};
    QStyleOptionViewItem option(plain);
    initStyleOption(&option, index);
    return {option.fontMetrics.horizontalAdvance(option.text) + 2 * TextMargin,
            qMax(RowHeight, option.fontMetrics.height() + 8)};
}
