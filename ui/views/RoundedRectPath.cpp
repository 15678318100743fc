#include "RoundedRectPath.h"

namespace
{
void addCorner(BezierPath &path, bool rounded, const QPointF &corner, const QPointF &begin,
               const QPointF &end)
{
    if (!rounded)
        return path.lineTo(corner);
    path.lineTo(begin);
    path.curveTo(end, corner, corner);
}
} // namespace

BezierPath roundedRectPath(const QRectF &rect, Corners roundedCorners, qreal cornerRadius)
{
    const qreal w = rect.width();
    const qreal h = rect.height();
    const qreal r = cornerRadius;
    const auto rounds = [&](Corners corner) { return roundedCorners.contains(corner); };
    BezierPath path;
    path.moveTo({w, 0});
    addCorner(path, rounds(Corners::bottomRight), {w, 0}, {w - r, 0}, {w, r});
    addCorner(path, rounds(Corners::topRight), {w, h}, {w, h - r}, {w - r, h});
    addCorner(path, rounds(Corners::topLeft), {0, h}, {r, h}, {0, h - r});
    addCorner(path, rounds(Corners::bottomLeft), {0, 0}, {0, r}, {r, 0});
    return path;
}
