#pragma once
#include <QColor>
#include <QRectF>
#include <QString>

class QPainter;

/// Draws the bundle's picture of that name into `rect` in one colour, using only its shape. Draws nothing
/// when there is no such picture.
void drawGlyph(QPainter &painter, const QString &name, const QRectF &rect, const QColor &color);
