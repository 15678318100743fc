#include "PosterImage.h"

#include <QBuffer>
#include <QImageReader>

#include <cmath>

namespace
{
constexpr qsizetype MaxBytes = 5 * 1024 * 1024;
constexpr int MaxSide = 4096;

bool isBounded(const QSize &size)
{
    return size.width() > 0 && size.height() > 0 && size.width() <= MaxSide && size.height() <= MaxSide;
}
} // namespace

QImage posterImage(const QByteArray &encoded, const QSize &size, qreal pixelRatio)
{
    if (encoded.isEmpty() || encoded.size() > MaxBytes || !(pixelRatio > 0))
        return {};
    QByteArray bytes = encoded;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    if (!isBounded(reader.size()))
        return {};
    QImage image = reader.read();
    if (image.isNull())
        return {};
    const int width = std::min(static_cast<int>(std::lround(size.width() * pixelRatio)), MaxSide);
    if (width > 0 && width < image.width())
        image = image.scaledToWidth(width, Qt::SmoothTransformation);
    image.setDevicePixelRatio(size.width() > 0 ? qreal(image.width()) / size.width() : pixelRatio);
    return image;
}
