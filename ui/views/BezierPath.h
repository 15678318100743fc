#pragma once
#include "Corners.h"
#include <QList>
#include <QPainterPath>

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
        QPointF point = {};         // the end point
        QPointF controlPoint1 = {}; // of a curve
        QPointF controlPoint2 = {};
        bool operator==(const Element &) const = default;
    };

    BezierPath() = default;
    explicit BezierPath(const QList<Element> &elements) : m_elements(elements) {}
    static BezierPath rect(const QRectF &rect);
    /// The outline of a rectangle of `rect`'s size at (0, 0) with these corners rounded: one open subpath,
    /// anticlockwise from the bottom right, its bottom edge left to the implicit closing of a fill. Both
    /// control points of a corner lie on the sharp corner, so that it hugs it more tightly than a circle's
    /// arc. The radius is not clamped.
    static BezierPath rect(const QRectF &rect, Corners roundedCorners, qreal cornerRadius);

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
