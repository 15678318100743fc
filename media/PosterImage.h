#pragma once
#include <QImage>
#include <QSize>

/// Decodes a poster at the size it is shown in: as wide as `size` times `pixelRatio`, with its own
/// proportions, and that ratio set. A null image for what is no picture, larger than 5 MiB or 4,096 pixels a
/// side, or cut short. Any thread.
QImage posterImage(const QByteArray &encoded, const QSize &size, qreal pixelRatio);
