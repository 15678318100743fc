#pragma once
#include <ui/views/Image.h>

#include <QColor>
#include <QEvent>
#include <QImage>
#include <QPainter>
#include <QVariantAnimation>
#include <QWidget>

#include <algorithm>
#include <functional>

/// What `draw` paints on a white ground of that size in points.
inline QImage painted(const QSize &size, const std::function<void(QPainter &)> &draw,
                      qreal devicePixelRatio = 1)
{
    QImage image(size * devicePixelRatio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::white);
    QPainter painter(&image);
    draw(painter);
    return image;
}

/// An image of one colour.
inline ui::Image solidImage(const QSize &size, const QColor &color)
{
    QImage pixels(size, QImage::Format_ARGB32_Premultiplied);
    pixels.fill(color);
    return ui::Image(pixels);
}

/// Whether two colours are the same but for rounding.
inline bool isNear(const QColor &a, const QColor &b, int tolerance = 3)
{
    return qAbs(a.red() - b.red()) <= tolerance && qAbs(a.green() - b.green()) <= tolerance &&
           qAbs(a.blue() - b.blue()) <= tolerance;
}

/// Whether anything dark is in that area.
inline bool hasInk(const QImage &image, const QRect &area)
{
    const QImage part = image.copy(area);
    for (int pixel = 0; pixel < part.width() * part.height(); ++pixel) {
        if (part.pixelColor(pixel % part.width(), pixel / part.width()).lightness() < 200)
            return true;
    }
    return false;
}

/// The animation that is running below an object, or nothing.
inline QVariantAnimation *runningAnimation(QObject &below)
{
    const auto all = below.findChildren<QVariantAnimation *>();
    const auto running = std::find_if(all.begin(), all.end(), [](const QVariantAnimation *animation) {
        return animation->state() == QAbstractAnimation::Running;
    });
    return running == all.end() ? nullptr : *running;
}

/// Counts how often a widget is painted.
class PaintCounter final : public QObject
{
public:
    explicit PaintCounter(QWidget &widget) { widget.installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }
};
