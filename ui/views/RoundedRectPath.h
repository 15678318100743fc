#pragma once
#include "BezierPath.h"
#include "Corners.h"

/// The outline of a rectangle of `rect`'s size at (0, 0) with these corners rounded: one open subpath,
/// anticlockwise from the bottom right with y upwards, its bottom edge left to the implicit closing of a
/// fill. Both control points of a corner lie on the sharp corner, so that it hugs it more tightly than a
/// circle's arc. The radius is not clamped.
BezierPath roundedRectPath(const QRectF &rect, Corners roundedCorners, qreal cornerRadius);
