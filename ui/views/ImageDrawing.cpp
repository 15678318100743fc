#include "ImageDrawing.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace
{
qreal onPixel(qreal point, qreal ratio)
{
    return std::round(point * ratio) / ratio;
}

QSizeF scaledSize(const QSizeF &size, const QRectF &bounds, ContentsGravity gravity)
{
    const qreal across = bounds.width() / size.width();
    const qreal down = bounds.height() / size.height();
    switch (gravity) {
    case ContentsGravity::Resize:
        return bounds.size();
    case ContentsGravity::ResizeAspect:
        return size * std::min(across, down);
    case ContentsGravity::ResizeAspectFill:
        return size * std::max(across, down);
    case ContentsGravity::Center:
        break;
    }
    return size;
}
} // namespace

QRectF placedByGravity(const QSizeF &size, const QRectF &bounds, ContentsGravity gravity)
{
    if (size.isEmpty())
        return {};
    QRectF placed(QPointF(), scaledSize(size, bounds, gravity));
    placed.moveCenter(bounds.center());
    return placed;
}

void drawImage(QPainter &painter, const ui::Image &image, const QRectF &bounds, ContentsGravity gravity)
{
    QRectF target = placedByGravity(image.size(), bounds, gravity);
    const qreal ratio = painter.device()->devicePixelRatioF();
    const QPixmap pixmap = image.pixmap(target.size(), ratio);
    if (pixmap.isNull())
        return;
    const QSizeF drawn = pixmap.deviceIndependentSize();
    // A picture drawn at its requested size is aligned to whole pixels, so that it stays sharp.
    if (std::abs(drawn.width() - target.width()) < 1 && std::abs(drawn.height() - target.height()) < 1)
        target = QRectF(QPointF(onPixel(target.x(), ratio), onPixel(target.y(), ratio)), drawn);
    painter.save();
    painter.setClipRect(bounds, Qt::IntersectClip);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, pixmap, QRectF(pixmap.rect()));
    painter.restore();
}
