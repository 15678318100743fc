#include "ChromeColors.h"
#include "ChromePainting.h"

#include <QPainter>
#include <QStyleOption>

namespace
{
using ChromePainting::isEnabled;
using ChromePainting::Role;

struct ButtonLook
{
    QColor fill; // transparent for none
    QColor text;
    QFont::Weight weight = QFont::Medium;
};

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

QColor accentFill(const QStyleOption &option, const ChromeColors &colors)
{
    if (!isEnabled(option))
        return ChromeColors::mixed(colors.window, colors.accent, 0.4);
    const QColor towards = colors.dark ? QColor(Qt::white) : QColor(Qt::black);
    const qreal amount = isDown(option) ? 0.18 : isHovered(option) ? 0.08 : 0;
    return ChromeColors::mixed(colors.accent, towards, amount);
}

ButtonLook lookOf(const QStyleOptionButton &option, Role role)
{
    const ChromeColors colors = ChromeColors::of(option.palette);
    if (isAccented(option, role))
        return {accentFill(option, colors), colors.accentText, QFont::DemiBold};
    const QColor text = option.palette.color(QPalette::ButtonText);
    const QColor hoverFill = isHovered(option) ? colors.pill : QColor(Qt::transparent);
    if (role == Role::Tab) {
        const bool checked = option.state & QStyle::State_On;
        return {checked || isDown(option) ? colors.pill : hoverFill, checked ? text : colors.secondaryText};
    }
    if (role == Role::Link)
        return {isDown(option) ? colors.pressedPill : hoverFill, option.palette.color(QPalette::Link)};
    return {greyFill(option, colors), text};
}

qreal radiusOf(const QRect &rect)
{
    return qMin<qreal>(ChromePainting::ButtonRadius, rect.height() / 2.0);
}
} // namespace

namespace ChromePainting
{
void drawPushButton(QPainter &painter, const QStyleOptionButton &option, Role role)
{
    const ChromeColors colors = ChromeColors::of(option.palette);
    const QRectF rect = option.rect;
    const qreal radius = radiusOf(option.rect);
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
    painter.save();
    QFont font = painter.font();
    font.setWeight(look.weight);
    painter.setFont(font);
    QPalette palette = option.palette;
    palette.setColor(QPalette::ButtonText, isEnabled(option) || isAccented(option, role)
                                               ? look.text
                                               : palette.color(QPalette::Disabled, QPalette::ButtonText));
    style.drawItemText(&painter, option.rect, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine,
                       palette, true, option.text, QPalette::ButtonText);
    painter.restore();
}

void drawToolButton(QPainter &painter, const QStyleOptionToolButton &option, Role role, const QStyle &style)
{
    const ChromeColors colors = ChromeColors::of(option.palette);
    const qreal radius = radiusOf(option.rect);
    if (role == Role::Menu || !(option.state & QStyle::State_AutoRaise) || isHovered(option) ||
        isDown(option))
        fillRounded(painter, option.rect, radius, greyFill(option, colors));
    if (showsFocus(option))
        strokeRounded(painter, option.rect, radius, colors.accent, FocusRingWidth);
    if (role == Role::Menu) {
        const QPointF center = QRectF(option.rect).center();
        for (const qreal y : {-3.0, 0.0, 3.0})
            fillRounded(painter, QRectF(-4, y - 0.7, 8, 1.4).translated(center), 0, colors.text);
        return;
    }
    QStyleOptionToolButton label(option);
    label.state &= ~QStyle::State_Sunken; // no shift of the label while pressed
    style.drawControl(QStyle::CE_ToolButtonLabel, &label, &painter, nullptr);
}
} // namespace ChromePainting
