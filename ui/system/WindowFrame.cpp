#include "WindowFrame.h"

#include <QRect>

namespace WindowFrame
{
namespace
{
struct GrabRects
{
    QRect outer;
    QRect inner;
};

GrabRects grabRects(const QSize &windowSize, int margin)
{
    const QRect frame = QRect(QPoint(), windowSize).marginsRemoved({margin, margin, margin, margin});
    if (margin == 0)
        return {frame, frame.adjusted(InnerGrabZone, InnerGrabZone, -InnerGrabZone, -InnerGrabZone)};
    return {frame.adjusted(-OuterGrabZone, -OuterGrabZone, OuterGrabZone, OuterGrabZone), frame};
}
} // namespace

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

Published publishedFor(const QSize &windowSize, const Look &look)
{
    const GrabRects rects = grabRects(windowSize, look.margin);
    const QRect frame = look.margin > 0 ? rects.inner : rects.outer;
    return {.window = windowSize,
            .frame = frame,
            .grab = rects.outer,
            .cornerRadius = look.rounded ? CornerRadius : 0};
}

Qt::Edges edgesAt(const QPoint &point, const QSize &windowSize, int margin)
{
    const GrabRects rects = grabRects(windowSize, margin);
    if (!rects.outer.contains(point) || rects.inner.contains(point))
        return {};
    Qt::Edges edges;
    if (point.x() < rects.inner.left() + CornerGrabLength)
        edges |= Qt::LeftEdge;
    else if (point.x() > rects.inner.right() - CornerGrabLength)
        edges |= Qt::RightEdge;
    if (point.y() < rects.inner.top() + CornerGrabLength)
        edges |= Qt::TopEdge;
    else if (point.y() > rects.inner.bottom() - CornerGrabLength)
        edges |= Qt::BottomEdge;
    return edges;
}

QRegion grabZone(const QSize &windowSize, int margin)
{
    const GrabRects rects = grabRects(windowSize, margin);
    return QRegion(rects.outer).subtracted(rects.inner);
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
