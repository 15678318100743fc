#include "ImageSource.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace
{
constexpr int MaxSidePixels = 4096;
// An icon needs two or three sizes; more only occur while a window is resized.
constexpr std::size_t MaxDrawnPixmaps = 6;

int bounded(qreal pixels)
{
    // NaN gives 0, too.
    return pixels >= 0.5 ? int(std::lround(std::min(pixels, qreal(MaxSidePixels)))) : 0;
}

bool isSvg(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix();
    return suffix.compare(QLatin1String("svg"), Qt::CaseInsensitive) == 0 ||
           suffix.compare(QLatin1String("svgz"), Qt::CaseInsensitive) == 0;
}
} // namespace

std::shared_ptr<ui::Image::Source> ui::Image::Source::read(const QString &path)
{
    if (isSvg(path)) {
        auto svg = std::make_unique<QSvgRenderer>();
        if (!svg->load(path) || svg->defaultSize().isEmpty())
            return nullptr;
        return std::shared_ptr<Source>(new Source(std::move(svg)));
    }
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QImage pixels = reader.read();
    if (pixels.isNull())
        return nullptr;
    return std::make_shared<Source>(pixels);
}

QSizeF ui::Image::Source::naturalSize() const
{
    return m_svg ? QSizeF(m_svg->defaultSize()) : m_pixels.deviceIndependentSize();
}

QPixmap ui::Image::Source::pixmap(const QSizeF &size, qreal devicePixelRatio)
{
    const QSize pixels(bounded(size.width() * devicePixelRatio), bounded(size.height() * devicePixelRatio));
    if (pixels.isEmpty())
        return {};
    const auto known = std::find_if(m_drawn.begin(), m_drawn.end(), [&](const Drawn &drawn) {
        return drawn.pixels == pixels && qFuzzyCompare(drawn.ratio, devicePixelRatio);
    });
    if (known == m_drawn.end())
        keep({pixels, devicePixelRatio, draw(pixels, devicePixelRatio)});
    else
        m_drawn.splice(m_drawn.begin(), m_drawn, known);
    return m_drawn.front().pixmap;
}

QPixmap ui::Image::Source::draw(const QSize &pixels, qreal devicePixelRatio) const
{
    QImage drawn;
    if (m_svg) {
        drawn = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        m_svg->render(&painter, QRectF(QPointF(), QSizeF(pixels)));
    } else if (!m_pixels.isNull()) {
        drawn = m_pixels.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    QPixmap pixmap = QPixmap::fromImage(std::move(drawn));
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

void ui::Image::Source::keep(const Drawn &drawn)
{
    m_drawn.push_front(drawn);
    if (m_drawn.size() > MaxDrawnPixmaps)
        m_drawn.pop_back();
}
