#include "ChromeColors.h"
#include "ChromePainting.h"

#include <QPainter>
#include <QStyleOption>

namespace
{
using ChromePainting::drawLines;

constexpr int MenuRadius = 9;
constexpr int ItemRadius = 6;
constexpr int ItemMargin = 5; // between the menu's edge and an item's ground
constexpr int SignColumn = 22;
constexpr int TextEnd = 14;
constexpr int ItemHeight = 28;
constexpr int SeparatorHeight = 9;
constexpr int ShortcutGap = 24;
constexpr int IconSize = 16;

void drawSigns(QPainter &painter, const QStyleOptionMenuItem &option, const QRect &ground,
               const QColor &color)
{
    const QRectF column = QStyle::visualRect(option.direction, ground,
                                             QRect(ground.topLeft(), QSize(SignColumn, ground.height())));
    if (option.checkType != QStyleOptionMenuItem::NotCheckable && option.checked)
        drawLines(painter, column.center(), {{-3.5, 0.2}, {-1.1, 2.6}, {3.7, -2.6}}, color, 1.6);
    else if (!option.icon.isNull())
        option.icon.paint(
            &painter,
            QRectF(column.center() - QPointF(IconSize, IconSize) / 2, QSizeF(IconSize, IconSize)).toRect());
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu)
        drawLines(painter, {ground.right() - 8.0, QRectF(ground).center().y()},
                  {{-3, -3.5}, {0, 0}, {-3, 3.5}}, color, 1.5);
}
} // namespace

namespace ChromePainting
{
void drawMenuPanel(QPainter &painter, const QStyleOption &option, bool rounded)
{
    const ChromeColors colors = ChromeColors::of(option.palette);
    const QColor ground = colors.dark ? ChromeColors::mixed(colors.window, colors.text, 0.06) : colors.window;
    const qreal radius = rounded ? MenuRadius : 0;
    fillRounded(painter, option.rect, radius, ground);
    strokeRounded(painter, option.rect, radius, ChromeColors::mixed(colors.window, colors.text, 0.18), 1);
}

void drawMenuItem(QPainter &painter, const QStyleOptionMenuItem &option, const QStyle &style)
{
    const ChromeColors colors = ChromeColors::of(option.palette);
    const QRect ground = option.rect.adjusted(ItemMargin, 0, -ItemMargin, 0);
    if (option.menuItemType == QStyleOptionMenuItem::Separator) {
        const QRect line(ground.left() + 6, ground.center().y(), ground.width() - 12, 1);
        painter.fillRect(line, colors.border);
        return;
    }
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool selected = enabled && option.state & QStyle::State_Selected;
    if (selected)
        fillRounded(painter, ground, ItemRadius, colors.accent);
    QPalette palette = option.palette;
    if (selected)
        palette.setColor(QPalette::WindowText, colors.accentText);
    painter.save();
    painter.setFont(option.font);
    drawSigns(painter, option, ground, palette.color(QPalette::WindowText));
    const QStringList parts = option.text.split(u'\t');
    const QRect textRect =
        QStyle::visualRect(option.direction, ground, ground.adjusted(SignColumn, 0, -TextEnd, 0));
    const int flags = Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextShowMnemonic;
    style.drawItemText(&painter, textRect,
                       flags | static_cast<int>(QStyle::visualAlignment(option.direction, Qt::AlignLeft)),
                       palette, enabled, parts.value(0), QPalette::WindowText);
    if (parts.size() > 1) {
        if (!selected)
            palette.setColor(QPalette::Active, QPalette::WindowText, colors.secondaryText);
        style.drawItemText(&painter, textRect,
                           flags |
                               static_cast<int>(QStyle::visualAlignment(option.direction, Qt::AlignRight)),
                           palette, enabled, parts[1], QPalette::WindowText);
    }
    painter.restore();
}

QSize menuItemSize(const QStyleOptionMenuItem &option, const QSize &contents)
{
    if (option.menuItemType == QStyleOptionMenuItem::Separator)
        return {contents.width(), SeparatorHeight};
    // The menu adds the width of the widest shortcut by itself, without a gap.
    const int gap = option.text.contains(u'\t') ? ShortcutGap : 0;
    const int width = contents.width() + 2 * ItemMargin + SignColumn + TextEnd + gap;
    return {width, qMax(ItemHeight, contents.height() + 8)};
}
} // namespace ChromePainting
