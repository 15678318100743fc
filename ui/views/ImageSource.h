#pragma once
#include "Image.h"

#include <QSvgRenderer>

#include <list>

/// The content of an image, shared by its copies, and the pixmaps drawn recently. Main thread only.
class ui::Image::Source final
{
public:
    /// The file's content, or null when it is not a complete picture.
    static std::shared_ptr<Source> read(const QString &path);
    explicit Source(const QImage &pixels) : m_pixels(pixels) {}

    /// In points.
    QSizeF naturalSize() const;
    QPixmap pixmap(const QSizeF &size, qreal devicePixelRatio);

private:
    struct Drawn
    {
        QSize pixels;
        qreal ratio;
        QPixmap pixmap;
    };

    explicit Source(std::unique_ptr<QSvgRenderer> svg) : m_svg(std::move(svg)) {}
    QPixmap draw(const QSize &pixels, qreal devicePixelRatio) const;
    void keep(const Drawn &drawn);

    std::unique_ptr<QSvgRenderer> m_svg; // else m_pixels
    QImage m_pixels;
    std::list<Drawn> m_drawn; // the most recently used first
};
