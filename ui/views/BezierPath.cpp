#include "BezierPath.h"

#include <QPainter>

using Kind = BezierPath::Element::Kind;

BezierPath BezierPath::rect(const QRectF &rect)
{
    return BezierPath({{Kind::MoveTo, rect.topLeft()},
                       {Kind::LineTo, rect.topRight()},
                       {Kind::LineTo, rect.bottomRight()},
                       {Kind::LineTo, rect.bottomLeft()},
                       {Kind::Close}});
}

BezierPath BezierPath::rect(const QRectF &rect, Corners roundedCorners, qreal cornerRadius)
{
    const qreal w = rect.width();
    const qreal h = rect.height();
    const qreal r = cornerRadius;
    QList<Element> elements{{Kind::MoveTo, {w, 0}}};
    const auto turn = [&](Corners which, const QPointF &corner, const QPointF &begin, const QPointF &end) {
        if (!roundedCorners.contains(which)) {
            elements.append({Kind::LineTo, corner});
            return;
        }
        elements.append({Kind::LineTo, begin});
        elements.append({Kind::CurveTo, end, corner, corner});
    };
    turn(Corners::bottomRight, {w, 0}, {w - r, 0}, {w, r});
    turn(Corners::topRight, {w, h}, {w, h - r}, {w - r, h});
    turn(Corners::topLeft, {0, h}, {r, h}, {0, h - r});
    turn(Corners::bottomLeft, {0, 0}, {0, r}, {r, 0});
    return BezierPath(elements);
}

QPainterPath BezierPath::painterPath(qreal viewHeight) const
{
    const auto flipped = [viewHeight](const QPointF &point) {
        return QPointF(point.x(), viewHeight - point.y());
    };
    QPainterPath path;
    for (const auto &[kind, point, controlPoint1, controlPoint2] : m_elements) {
        switch (kind) {
        case Kind::MoveTo:
            path.moveTo(flipped(point));
            break;
        case Kind::LineTo:
            path.lineTo(flipped(point));
            break;
        case Kind::CurveTo:
            path.cubicTo(flipped(controlPoint1), flipped(controlPoint2), flipped(point));
            break;
        case Kind::Close:
            path.closeSubpath();
            break;
        }
    }
    return path;
}

void BezierPath::stroke(QPainter &painter, qreal viewHeight) const
{
    const QPen pen(painter.pen().brush(), m_lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    painter.strokePath(painterPath(viewHeight), pen);
}
