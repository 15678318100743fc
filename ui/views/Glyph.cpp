#include "Glyph.h"

#include "Image.h"

#include <QPainter>

void drawGlyph(QPainter &painter, const QString &name, const QRectF &rect, const QColor &color)
{
    const auto image = ui::Image::named(name);
    if (!image)
        return;
    QPixmap shape = image->pixmap(rect.size(), painter.device()->devicePixelRatioF());
    QPainter tint(&shape);
    tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tint.fillRect(QRectF(QPointF(), rect.size()), color);
    tint.end();
    painter.drawPixmap(rect.topLeft(), shape);
}
