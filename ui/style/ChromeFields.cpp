#include "ChromeColors.h"
#include "ChromePainting.h"

#include <QPainter>
#include <QStyleOption>

namespace
{
using ChromePainting::isEnabled;

constexpr int ComboTextMargin = 10;
constexpr int ComboArrowSpace = 28;
constexpr qreal ComboArrowWidth = 8;
constexpr int PillTextMargin = 9;
constexpr int PillArrowSpace = 19;
constexpr qreal PillArrowWidth = 6;
constexpr qreal CheckRadius = 4;
// Only its frame sets an unchecked indicator off from the background.
constexpr qreal IndicatorFrame = 0.45;

QColor faded(const QStyleOption &option, const QColor &color)
{
    return isEnabled(option) ? color
                             : ChromeColors::mixed(option.palette.color(QPalette::Window), color, 0.4);
}

QColor indicatorFrame(const QStyleOption &option, const ChromeColors &colors)
{
    if (ChromePainting::showsFocus(option))
        return colors.accent;
    return faded(option, ChromeColors::mixed(colors.window, colors.text, IndicatorFrame));
}

QColor fieldFill(const QStyleOption &option, const ChromeColors &colors)
{
    return option.state & QStyle::State_MouseOver && isEnabled(option)
               ? ChromeColors::mixed(colors.field, colors.text, 0.03)
               : colors.field;
}

QColor pillFill(const QStyleOption &option, const ChromeColors &colors)
{
    return option.state & QStyle::State_MouseOver ? colors.hoveredPill : colors.pill;
}
} // namespace

namespace ChromePainting
{
void drawLineEdit(QPainter &painter, const QStyleOptionFrame &option)
{
    const ChromeColors colors = ChromeColors::of(option.palette);
    if (option.lineWidth <= 0) {
        painter.fillRect(option.rect, option.palette.brush(QPalette::Base));
        return;
    }
    fillRounded(painter, option.rect, FieldRadius, colors.field);
    const bool focused = (option.state & QStyle::State_HasFocus) && isEnabled(option);
    strokeRounded(painter, option.rect, FieldRadius, focused ? colors.accent : colors.border,
                  focused ? FocusRingWidth : 1);
}

void drawCheckBoxIndicator(QPainter &painter, const QStyleOption &option)
{
    const ChromeColors colors = ChromeColors::of(option.palette);
    const QRectF rect = option.rect;
    if (!(option.state & QStyle::State_On)) {
        fillRounded(painter, rect, CheckRadius, colors.field);
        strokeRounded(painter, rect, CheckRadius, indicatorFrame(option, colors), showsFocus(option) ? 2 : 1);
        return;
    }
    fillRounded(painter, rect, CheckRadius, faded(option, colors.accent));
    if (showsFocus(option))
        strokeRounded(painter, rect.adjusted(1.5, 1.5, -1.5, -1.5), CheckRadius - 1.5, colors.accentText, 1);
    drawLines(painter, rect.center(), {{-3, 0.2}, {-0.9, 2.3}, {3.2, -2.2}}, colors.accentText, 1.6);
}

void drawComboBox(QPainter &painter, const QStyleOptionComboBox &option, Role role)
{
    const ChromeColors colors = ChromeColors::of(option.palette);
    const QRectF rect = option.rect;
    const bool pill = role == Role::Pill;
    const qreal radius = pill ? rect.height() / 2 : ButtonRadius;
    fillRounded(painter, rect, radius, pill ? pillFill(option, colors) : fieldFill(option, colors));
    if (showsFocus(option))
        strokeRounded(painter, rect, radius, colors.accent, FocusRingWidth);
    else if (!pill)
        strokeRounded(painter, rect, radius, colors.border, 1);
    const qreal fromEnd = pill ? 11.5 : 14;
    const qreal x = option.direction == Qt::RightToLeft ? rect.left() + fromEnd : rect.right() - fromEnd;
    drawDownArrow(painter, {x, rect.center().y() + 0.5}, pill ? PillArrowWidth : ComboArrowWidth,
                  option.palette.color(QPalette::Text));
}

QRect comboBoxTextRect(const QStyleOptionComboBox &option, Role role)
{
    const bool pill = role == Role::Pill;
    const QRect rect = option.rect.adjusted(pill ? PillTextMargin : ComboTextMargin, 1,
                                            -(pill ? PillArrowSpace : ComboArrowSpace), -1);
    return QStyle::visualRect(option.direction, option.rect, rect);
}

void drawComboBoxLabel(QPainter &painter, const QStyleOptionComboBox &option, Role role, const QStyle &style)
{
    QRect rect = comboBoxTextRect(option, role);
    painter.save();
    if (role == Role::Pill) {
        QFont font = painter.font();
        font.setWeight(QFont::Medium);
        painter.setFont(font);
    }
    if (!option.currentIcon.isNull()) {
        const QRect iconRect(rect.topLeft(), QSize(option.iconSize.width(), rect.height()));
        option.currentIcon.paint(&painter, QStyle::visualRect(option.direction, rect, iconRect));
        rect.adjust(iconRect.width() + 6, 0, 0, 0);
    }
    const QString text = painter.fontMetrics().elidedText(option.currentText, Qt::ElideRight, rect.width());
    style.drawItemText(
        &painter, rect,
        static_cast<int>(QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter)),
        option.palette, isEnabled(option), text, QPalette::Text);
    painter.restore();
}
} // namespace ChromePainting
