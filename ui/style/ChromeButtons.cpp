#include "ChromeColors.h"
#include "ChromePainting.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>

namespace
{
using ChromePainting::Role;

struct ButtonLook
{
    QColor fill; // transparent for none
    QColor text;
    QFont::Weight weight = QFont::Normal;
};

bool isEnabled(const QStyleOption &option)
{
    return option.state & QStyle::State_Enabled;
}

bool isDown(const QStyleOption &option)
{
    return option.state & QStyle::State_Sunken;
}

bool isHovered(const QStyleOption &option)
{
    return isEnabled(option) && option.state & QStyle::State_MouseOver;
}

bool isAccented(const QStyleOptionButton &option, Role role)
{
    return role == Role::Accent ||
           (role == Role::Plain && option.features & QStyleOptionButton::DefaultButton);
}

QColor greyFill(const QStyleOption &option, const ChromeColors &colors)
{
    if (isDown(option))
        return colors.pressedPill;
    return isHovered(option) ? colors.hoveredPill : colors.pill;
}

ButtonLook accentLook(const QStyleOption &option, const ChromeColors &colors)
{
    if (!isEnabled(option))
        return {ChromeColors::mixed(colors.window, colors.accent, 0.4), colors.accentText, QFont::DemiBold};
    const QColor towards = colors.dark ? QColor(Qt::white) : QColor(Qt::black);
    const qreal amount = isDown(option) ? 0.18 : isHovered(option) ? 0.08 : 0;
    return {ChromeColors::mixed(colors.accent, towards, amount), colors.accentText, QFont::DemiBold};
}

ButtonLook lookOf(const QStyleOptionButton &option, Role role)
{
    const ChromeColors colors = ChromeColors::of(option.palette);
    if (isAccented(option, role))
        return accentLook(option, colors);
    const QColor text = option.palette.color(QPalette::ButtonText);
    const bool checked = option.state & QStyle::State_On;
    if (role == Role::Tab)
        return {checked || isDown(option) ? colors.pill
                : isHovered(option)       ? colors.pill
                                          : QColor(Qt::transparent),
                checked ? text : colors.secondaryText, QFont::Medium};
    if (role == Role::Link)
        return {isDown(option)      ? colors.pressedPill
                : isHovered(option) ? colors.pill
                                    : QColor(Qt::transparent),
                option.palette.color(QPalette::Link), QFont::Medium};
    const bool flat = option.features & QStyleOptionButton::Flat;
    if (flat && !isDown(option) && !isHovered(option) && !checked)
        return {Qt::transparent, text, QFont::Medium};
    return {checked ? colors.pressedPill : greyFill(option, colors), text, QFont::Medium};
}

qreal radiusOf(const QRect &rect, Role role)
{
    return role == Role::Pill ? rect.height() / 2.0
                              : qMin<qreal>(ChromePainting::ButtonRadius, rect.height() / 2.0);
}

void drawMenuSign(QPainter &painter, const QRect &rect, const QColor &color)
{
    constexpr qreal half = 4;
    constexpr qreal spacing = 3;
    const QPointF center = QRectF(rect).center();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.4, Qt::SolidLine, Qt::FlatCap));
    for (const qreal y : {-spacing, 0.0, spacing})
        painter.drawLine(center + QPointF(-half, y), center + QPointF(half, y));
    painter.restore();
}
} // namespace

namespace ChromePainting
{
void drawPushButton(QPainter &painter, const QStyleOptionButton &option, Role role)
{
    const ChromeColors colors = ChromeColors::of(option.palette);
    const QRectF rect = option.rect;
    const qreal radius = radiusOf(option.rect, role);
    fillRounded(painter, rect, radius, lookOf(option, role).fill);
    if (!showsFocus(option))
        return;
    // A ring in the accent colour would be invisible on an accented button.
    if (isAccented(option, role))
        strokeRounded(painter, rect.adjusted(2, 2, -2, -2), radius - 2, colors.accentText, FocusRingWidth);
    else
        strokeRounded(painter, rect, radius, colors.accent, FocusRingWidth);
}

void drawPushButtonLabel(QPainter &painter, const QStyleOptionButton &option, Role role, const QStyle &style)
{
    const ButtonLook look = lookOf(option, role);
    QRect rect = option.rect;
    painter.save();
    QFont font = painter.font();
    font.setWeight(look.weight);
    painter.setFont(font);
    const bool hasMenu = option.features & QStyleOptionButton::HasMenu;
    if (!option.icon.isNull()) {
        const int spacing = option.text.isEmpty() ? 0 : 6;
        const int textWidth =
            option.text.isEmpty() ? 0 : painter.fontMetrics().horizontalAdvance(option.text);
        const int left = rect.center().x() + 1 - (option.iconSize.width() + spacing + textWidth) / 2;
        const QRect iconRect(left, rect.y(), option.iconSize.width(), rect.height());
        option.icon.paint(&painter, QStyle::visualRect(option.direction, rect, iconRect), Qt::AlignCenter,
                          isEnabled(option) ? QIcon::Normal : QIcon::Disabled);
        rect.adjust(option.iconSize.width() + spacing, 0, 0, 0);
    }
    if (hasMenu) {
        rect.adjust(0, 0, -12, 0);
        drawDownArrow(painter, {option.rect.right() - 11.5, QRectF(option.rect).center().y() + 0.5}, 6,
                      look.text);
    }
    QPalette palette = option.palette;
    palette.setColor(QPalette::ButtonText, isEnabled(option) || isAccented(option, role)
                                               ? look.text
                                               : palette.color(QPalette::Disabled, QPalette::ButtonText));
    const int flags = Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine;
    style.drawItemText(&painter, QStyle::visualRect(option.direction, option.rect, rect), flags, palette,
                       true, option.text, QPalette::ButtonText);
    painter.restore();
}

void drawToolButton(QPainter &painter, const QStyleOptionToolButton &option, Role role, const QStyle &style)
{
    const ChromeColors colors = ChromeColors::of(option.palette);
    const QRectF rect = option.rect;
    const qreal radius = radiusOf(option.rect, role);
    const bool raised = role == Role::Menu || role == Role::Pill || !(option.state & QStyle::State_AutoRaise);
    if (raised || isHovered(option) || isDown(option) || option.state & QStyle::State_On)
        fillRounded(painter, rect, radius,
                    option.state & QStyle::State_On ? colors.pressedPill : greyFill(option, colors));
    if (showsFocus(option))
        strokeRounded(painter, rect, radius, colors.accent, FocusRingWidth);
    if (option.icon.isNull() && option.text.isEmpty()) {
        if (role == Role::Menu)
            drawMenuSign(painter, option.rect, colors.text);
        return;
    }
    QStyleOptionToolButton label(option);
    label.state &= ~QStyle::State_Sunken; // no shift of the label while pressed
    const bool arrow = option.features & QStyleOptionToolButton::HasMenu && role == Role::Pill;
    if (arrow) {
        drawDownArrow(painter, {rect.right() - 11.5, rect.center().y() + 0.5}, 6, colors.text);
        label.rect.adjust(0, 0, -12, 0);
    }
    style.drawControl(QStyle::CE_ToolButtonLabel, &label, &painter, nullptr);
}
} // namespace ChromePainting
