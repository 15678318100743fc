#include "ChromePainting.h"
#include "ChromeColors.h"

#include <QPainter>
#include <QStyleOption>
#include <QVariant>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace ChromePainting
{
Role roleOf(const QWidget *widget)
{
    const QString role = widget ? widget->property("role").toString() : QString();
    if (role == u"accent"_s)
        return Role::Accent;
    if (role == u"tab"_s)
        return Role::Tab;
    if (role == u"pill"_s)
        return Role::Pill;
    if (role == u"menu"_s)
        return Role::Menu;
    if (role == u"link"_s)
        return Role::Link;
    return role == u"box"_s ? Role::Box : Role::Plain;
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

void drawDownArrow(QPainter &painter, const QPointF &center, qreal width, const QColor &color)
{
    const qreal half = width / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(QPolygonF{{center.x() - half, center.y() - half * 0.75},
                                  {center.x() + half, center.y() - half * 0.75},
                                  {center.x(), center.y() + half}});
    painter.restore();
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
} // namespace ChromePainting
