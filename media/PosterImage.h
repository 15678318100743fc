#pragma once
#include <QImage>
#include <QSize>

/// Decodes a poster at its displayed size: as wide as `size` times `pixelRatio`, with its own proportions,
/// and that ratio set. A null image when the data is not a picture, larger than 5 MiB or 4,096 pixels a side,
/// or truncated. Any thread.
QImage posterImage(const QByteArray &encoded, const QSize &size, qreal pixelRatio);
