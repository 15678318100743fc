#pragma once
#include <QPoint>
#include <QRect>
#include <QRegion>
#include <QSize>
#include <Qt>

/// What a window's frame looks like and where it is grabbed, as plain functions of its situation. All in
/// points.
namespace WindowFrame
{
constexpr int CornerRadius = 12;
constexpr int ShadowMargin = 28;
/// How far outside the frame it can be grabbed, and how far inside where there is no margin around it.
constexpr int OuterGrabZone = 8;
constexpr int InnerGrabZone = 5;
/// How far from a corner an edge still resizes both ways.
constexpr int CornerGrabLength = 16;

struct Situation
{
    bool composited = false;    // what the window leaves transparent shows what is behind it
    bool placedByFrame = false; // the window system can be told of the margin around the frame
    bool maximized = false;
    bool fullScreen = false;
    bool tiled = false;

    bool operator==(const Situation &) const = default;
};

struct Look
{
    bool rounded = false;
    int margin = 0;
    /// Without a shadow a line inside the frame sets the window off from what is behind it.
    bool hairline = false;

    bool operator==(const Look &) const = default;
};

Look lookFor(const Situation &situation);

/// A window's parts in its own points, as the window system is told of them.
struct Published
{
    QSize window;
    QRect frame;
    QRect grab; // where it takes the mouse; clicks around it go to what is behind
    int cornerRadius = 0;
};
Published publishedFor(const QSize &windowSize, const Look &look);

/// The edges a press at `point` of a window of that size drags, none when it is no place to resize.
Qt::Edges edgesAt(const QPoint &point, const QSize &windowSize, int margin);
/// Every place where `edgesAt` names an edge.
QRegion grabZone(const QSize &windowSize, int margin);
Qt::CursorShape cursorFor(Qt::Edges edges);
} // namespace WindowFrame
