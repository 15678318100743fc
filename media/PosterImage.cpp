#include "PosterImage.h"

#include <QBuffer>
#include <QImageReader>

#include <cmath>

namespace
{
constexpr qsizetype MaxBytes = 5'242'880;
constexpr int MaxSide = 4096;

/// Accepts only bitmap formats: a vector drawing may take long to draw and may name files to read.
bool isPhotograph(const QByteArray &format)
{
    return format == "jpeg" || format == "jpg" || format == "png" || format == "webp" || format == "gif";
}

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
    if (!isPhotograph(reader.format()))
        return {};
    const QSize whole = reader.size();
    if (!isBounded(whole))
        return {};
    // Scaled while decoding: the decoder then neither keeps the whole picture nor uses other threads.
    const int width = static_cast<int>(std::lround(std::min(size.width() * pixelRatio, qreal(MaxSide))));
    if (width > 0 && width < whole.width())
        reader.setScaledSize({width, std::max(1, whole.height() * width / whole.width())});
    QImage image = reader.read();
    if (!isBounded(image.size())) // a frame of a GIF may be larger than the size its header gives
        return {};
    image.setDevicePixelRatio(size.width() > 0 ? qreal(image.width()) / size.width() : pixelRatio);
    return image;
}
