#include "ChromeColors.h"
#include "ChromePainting.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>

namespace
{
constexpr int MinimumHandle = 28;
constexpr int HandleInset = 2;
constexpr qreal RestStrength = 0.28;
constexpr qreal HoverStrength = 0.42;
constexpr qreal PressedStrength = 0.55;
} // namespace

namespace ChromePainting
{
QRect scrollBarSlider(const QStyleOptionSlider &option)
{
    const bool horizontal = option.orientation == Qt::Horizontal;
    const int length = horizontal ? option.rect.width() : option.rect.height();
    const qint64 range = qint64(option.maximum) - option.minimum;
    int handle = length;
    if (range > 0) {
        const qint64 part = qint64(length) * option.pageStep / (range + option.pageStep);
        handle = qMin(length, qMax(MinimumHandle, static_cast<int>(part)));
    }
    const int start = QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition,
                                                      length - handle, option.upsideDown);
    return horizontal ? QRect(option.rect.x() + start, option.rect.y(), handle, option.rect.height())
                      : QRect(option.rect.x(), option.rect.y() + start, option.rect.width(), handle);
}

void drawScrollBar(QPainter &painter, const QStyleOptionSlider &option, const QRect &slider)
{
    if (option.maximum <= option.minimum)
        return;
    const bool pressed =
        option.state & QStyle::State_Sunken && option.activeSubControls & QStyle::SC_ScrollBarSlider;
    const bool hovered = option.state & QStyle::State_MouseOver;
    QColor color = option.palette.color(QPalette::Text);
    color.setAlphaF(static_cast<float>(pressed ? PressedStrength : hovered ? HoverStrength : RestStrength));
    const QRectF handle = QRectF(slider).adjusted(HandleInset, HandleInset, -HandleInset, -HandleInset);
    fillRounded(painter, handle, qMin(handle.width(), handle.height()) / 2, color);
}
} // namespace ChromePainting
