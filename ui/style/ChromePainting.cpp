#include "ChromePainting.h"
#include "ChromeColors.h"

#include <QPainter>
#include <QStyleOption>
#include <QVariant>
#include <QWidget>

#include <algorithm>
#include <array>

namespace
{
constexpr int MinimumHandle = 28; // of a scroll bar
constexpr int HandleInset = 2;
} // namespace

namespace ChromePainting
{
Role roleOf(const QWidget *widget)
{
    static constexpr std::array Names{"", "accent", "tab", "pill", "menu", "link", "box"}; // as the roles
    const QString role = widget ? widget->property("role").toString() : QString();
    const auto *name = std::find_if(Names.begin(), Names.end(), [&role](const char *candidate) {
        return role == QLatin1String(candidate);
    });
    return name == Names.end() ? Role::Plain : static_cast<Role>(name - Names.begin());
}

void strokeRounded(QPainter &painter, const QRectF &rect, qreal radius, const QColor &color, qreal width)
{
    const qreal inset = width / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, width));
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    painter.restore();
}

void fillRounded(QPainter &painter, const QRectF &rect, qreal radius, const QColor &color)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
}

void drawLines(QPainter &painter, const QPointF &center, const QPolygonF &line, const QColor &color,
               qreal width)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(line.translated(center));
    painter.restore();
}

void drawDownArrow(QPainter &painter, const QPointF &center, qreal width, const QColor &color)
{
    const qreal half = width / 2;
    const QPolygonF arrow{{-half, -half * 0.75}, {half, -half * 0.75}, {0, half}};
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(arrow.translated(center));
    painter.restore();
}

bool isEnabled(const QStyleOption &option)
{
    return option.state & QStyle::State_Enabled;
}

bool showsFocus(const QStyleOption &option)
{
    constexpr auto both = QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
    return (option.state & both) == both;
}

void drawBox(QPainter &painter, const QStyleOption &option)
{
    constexpr int radius = 10;
    fillRounded(painter, option.rect, radius, ChromeColors::of(option.palette).pill);
}

void drawPlainFrame(QPainter &painter, const QStyleOption &option)
{
    const ChromeColors colors = ChromeColors::of(option.palette);
    strokeRounded(painter, option.rect, 0, showsFocus(option) ? colors.accent : colors.border, 1);
}

void drawHeaderGround(QPainter &painter, const QStyleOption &option)
{
    const ChromeColors colors = ChromeColors::of(option.palette);
    painter.fillRect(option.rect, colors.panel);
    painter.fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1),
                     colors.separator);
}

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
    color.setAlphaF(pressed ? 0.55F : hovered ? 0.42F : 0.28F);
    const QRectF handle = QRectF(slider).adjusted(HandleInset, HandleInset, -HandleInset, -HandleInset);
    fillRounded(painter, handle, qMin(handle.width(), handle.height()) / 2, color);
}
} // namespace ChromePainting
