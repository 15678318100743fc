#pragma once
#include <QPoint>
#include <QRect>
#include <QRegion>
#include <QSize>
#include <Qt>

/// The look and grab areas of a window's frame as plain functions of its situation. All in points.
namespace WindowFrame
{
constexpr int CornerRadius = 12;
constexpr int ShadowMargin = 28;
/// The width of the grab area outside the frame, and inside when there is no margin around it.
constexpr int OuterGrabZone = 8;
constexpr int InnerGrabZone = 5;
/// The length from a corner along which an edge resizes both ways.
constexpr int CornerGrabLength = 16;

struct Situation
{
    bool composited = false;    // transparent parts of the window show what is behind it
    bool placedByFrame = false; // the window system knows the margin around the frame
    bool maximized = false;
    bool fullScreen = false;
    bool tiled = false;

    bool operator==(const Situation &) const = default;
};

struct Look
{
    bool rounded = false;
    int margin = 0;
    /// Without a shadow, a line inside the frame sets the window off from its background.
    bool hairline = false;

    bool operator==(const Look &) const = default;
};

Look lookFor(const Situation &situation);

/// The frame of a window of that size, without the margin.
QRect frameIn(const QSize &windowSize, int margin);
/// The part of the window that takes mouse events; clicks outside go to the windows behind.
QRect grabAreaIn(const QSize &windowSize, int margin);

/// The edges that a press at `point` of a window of that size drags; none elsewhere.
Qt::Edges edgesAt(const QPoint &point, const QSize &windowSize, int margin);
/// Every place where `edgesAt` names an edge.
QRegion grabZone(const QSize &windowSize, int margin);
Qt::CursorShape cursorFor(Qt::Edges edges);
} // namespace WindowFrame
