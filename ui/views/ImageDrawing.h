#pragma once
#include "Layer.h"

class QPainter;

/// Where a picture of that size goes in `bounds`. Nothing (an empty rectangle) for a picture without a size.
QRectF placedByGravity(const QSizeF &size, const QRectF &bounds, ContentsGravity gravity);

/// Draws the image by gravity, without leaving `bounds`.
void drawImage(QPainter &painter, const ui::Image &image, const QRectF &bounds, ContentsGravity gravity);
