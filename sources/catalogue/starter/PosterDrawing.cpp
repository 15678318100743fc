#include "PosterDrawing.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

QByteArray drawnPoster(const QByteArray &svg)
{
    constexpr QSize PosterPixels(480, 720);
    QSvgRenderer renderer(svg);
    if (!renderer.isValid())
        return {};
    QImage image(PosterPixels, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();

    QByteArray encoded;
    QBuffer buffer(&encoded);
    return image.save(&buffer, "PNG") ? encoded : QByteArray();
}
