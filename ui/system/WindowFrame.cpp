#include "WindowFrame.h"

#include <QRect>

namespace WindowFrame
{
namespace
{
/// The part of the window inside the grab area that drags no edge.
QRect innerAreaIn(const QSize &windowSize, int margin)
{
    const int inset = margin > 0 ? 0 : InnerGrabZone;
    return frameIn(windowSize, margin).adjusted(inset, inset, -inset, -inset);
}
} // namespace

QRect frameIn(const QSize &windowSize, int margin)
{
    return QRect(QPoint(), windowSize).adjusted(margin, margin, -margin, -margin);
}

QRect grabAreaIn(const QSize &windowSize, int margin)
{
    const int outset = margin > 0 ? OuterGrabZone : 0;
    return frameIn(windowSize, margin).adjusted(-outset, -outset, outset, outset);
}

Look lookFor(const Situation &situation)
{
    if (situation.maximized || situation.fullScreen)
        return {};
    if (situation.tiled || !situation.composited)
        return {.rounded = false, .margin = 0, .hairline = true};
    if (!situation.placedByFrame)
        return {.rounded = true, .margin = 0, .hairline = true};
    return {.rounded = true, .margin = ShadowMargin, .hairline = false};
}

Qt::Edges edgesAt(const QPoint &point, const QSize &windowSize, int margin)
{
    const QRect inner = innerAreaIn(windowSize, margin);
    if (!grabAreaIn(windowSize, margin).contains(point) || inner.contains(point))
        return {};
    Qt::Edges edges;
    if (point.x() < inner.left() + CornerGrabLength)
        edges |= Qt::LeftEdge;
    else if (point.x() > inner.right() - CornerGrabLength)
        edges |= Qt::RightEdge;
    if (point.y() < inner.top() + CornerGrabLength)
        edges |= Qt::TopEdge;
    else if (point.y() > inner.bottom() - CornerGrabLength)
        edges |= Qt::BottomEdge;
    return edges;
}

QRegion grabZone(const QSize &windowSize, int margin)
{
    return QRegion(grabAreaIn(windowSize, margin)).subtracted(innerAreaIn(windowSize, margin));
}

Qt::CursorShape cursorFor(Qt::Edges edges)
{
    if (edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge))
        return Qt::SizeFDiagCursor;
    if (edges == (Qt::RightEdge | Qt::TopEdge) || edges == (Qt::LeftEdge | Qt::BottomEdge))
        return Qt::SizeBDiagCursor;
    if (edges & (Qt::LeftEdge | Qt::RightEdge))
        return Qt::SizeHorCursor;
    if (edges & (Qt::TopEdge | Qt::BottomEdge))
        return Qt::SizeVerCursor;
    return Qt::ArrowCursor;
}
} // namespace WindowFrame
