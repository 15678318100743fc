#include "BezierPath.h"

#include <QPainter>

BezierPath BezierPath::rect(const QRectF &rect)
{
    BezierPath path;
    path.moveTo(rect.topLeft());
    path.lineTo(rect.topRight());
    path.lineTo(rect.bottomRight());
    path.lineTo(rect.bottomLeft());
    path.close();
    return path;
}

void BezierPath::moveTo(const QPointF &point)
{
    m_elements.append({Element::Kind::MoveTo, point, {}, {}});
}

void BezierPath::lineTo(const QPointF &point)
{
    m_elements.append({Element::Kind::LineTo, point, {}, {}});
}

void BezierPath::curveTo(const QPointF &point, const QPointF &controlPoint1, const QPointF &controlPoint2)
{
    m_elements.append({Element::Kind::CurveTo, point, controlPoint1, controlPoint2});
}

void BezierPath::close()
{
    m_elements.append({Element::Kind::Close, {}, {}, {}});
}

QPainterPath BezierPath::painterPath(qreal viewHeight) const
{
    const auto flipped = [viewHeight](const QPointF &point) {
        return QPointF(point.x(), viewHeight - point.y());
    };
    QPainterPath path;
    for (const Element &element : m_elements) {
        switch (element.kind) {
        case Element::Kind::MoveTo:
            path.moveTo(flipped(element.point));
            break;
        case Element::Kind::LineTo:
            path.lineTo(flipped(element.point));
            break;
        case Element::Kind::CurveTo:
            path.cubicTo(flipped(element.controlPoint1), flipped(element.controlPoint2),
                         flipped(element.point));
            break;
        case Element::Kind::Close:
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
