#include "DropOutline.h"

#include <ui/views/BezierPath.h>

#include <QPainter>

namespace
{
constexpr qreal OutlinePoints = 4;
} // namespace

void drawDropOutline(QPainter &painter, const QRect &bounds, const QPalette &palette)
{
    // A view cannot draw beyond its edge, so the stroke is moved in by half its width.
    constexpr qreal half = OutlinePoints / 2;
    BezierPath path = BezierPath::rect(QRectF(bounds).adjusted(half, half, -half, -half));
    path.setLineWidth(OutlinePoints);
    painter.setPen(palette.color(QPalette::Active, QPalette::Highlight));
    path.stroke(painter, bounds.height());
}

DropOutline::DropOutline(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
}

void DropOutline::setShown(bool shown)
{
    if (shown) {
        setGeometry(parentWidget()->rect());
        raise();
    }
    setVisible(shown);
}

void DropOutline::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawDropOutline(painter, rect(), palette());
}
