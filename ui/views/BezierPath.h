#pragma once
#include <QList>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>

class QPainter;

/// A path of lines and cubic curves, its elements exactly as added (also segments of zero length), y upwards.
/// Plain value.
class BezierPath final
{
public:
    struct Element
    {
        enum class Kind
        {
            MoveTo,
            LineTo,
            CurveTo,
            Close
        };
        Kind kind;
        QPointF point;         // the end point
        QPointF controlPoint1; // of a curve
        QPointF controlPoint2;
        bool operator==(const Element &) const = default;
    };

    static BezierPath rect(const QRectF &rect);

    void moveTo(const QPointF &point);
    void lineTo(const QPointF &point);
    void curveTo(const QPointF &point, const QPointF &controlPoint1, const QPointF &controlPoint2);
    void close();

    const QList<Element> &elements() const { return m_elements; }
    qreal lineWidth() const { return m_lineWidth; }
    void setLineWidth(qreal points) { m_lineWidth = points; }

    /// The path for drawing in a view of that height whose y grows downwards.
    QPainterPath painterPath(qreal viewHeight) const;
    /// Strokes the path with the painter's pen colour and this line width, in a view of that height.
    void stroke(QPainter &painter, qreal viewHeight) const;

private:
    QList<Element> m_elements;
    qreal m_lineWidth = 1;
};
