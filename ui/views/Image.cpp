#include "Image.h"

#include <base/Bundle.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace
{
constexpr int MaxSidePixels = 4096;
// An icon needs two or three sizes; more only occur while a window is resized.
constexpr qsizetype MaxDrawnPixmaps = 6;

int bounded(qreal pixels)
{
    // NaN gives 0, too.
    return pixels >= 0.5 ? int(std::lround(std::min(pixels, qreal(MaxSidePixels)))) : 0;
}

/// Format names come from servers, so only a plain file name may name an icon.
bool isPlainName(const QString &name)
{
    return !name.isEmpty() && !name.startsWith(u'.') && !name.contains(u'/') && !name.contains(u'\\') &&
           !name.contains(QChar(u'\0'));
}

QSizeF scaledSize(const QSizeF &size, const QSizeF &bounds, ContentsGravity gravity)
{
    switch (gravity) {
    case ContentsGravity::Resize:
        return bounds;
    case ContentsGravity::ResizeAspect:
        return size.scaled(bounds, Qt::KeepAspectRatio);
    case ContentsGravity::ResizeAspectFill:
        return size.scaled(bounds, Qt::KeepAspectRatioByExpanding);
    case ContentsGravity::Center:
        break;
    }
    return size;
}

qreal onPixel(qreal point, qreal ratio)
{
    return std::round(point * ratio) / ratio;
}
} // namespace

/// The content of an image, shared by its copies, and the pixmaps drawn recently.
class ui::Image::Source final
{
public:
    explicit Source(const QImage &pixels) : m_pixels(pixels) {}
    explicit Source(std::unique_ptr<QSvgRenderer> svg) : m_svg(std::move(svg)) {}

    QSizeF naturalSize() const
    {
        return m_svg ? QSizeF(m_svg->defaultSize()) : m_pixels.deviceIndependentSize();
    }
    QPixmap pixmap(const QSize &pixels, qreal devicePixelRatio);

private:
    QPixmap draw(const QSize &pixels, qreal devicePixelRatio) const;

    std::unique_ptr<QSvgRenderer> m_svg; // else m_pixels
    QImage m_pixels;
    QList<QPixmap> m_drawn; // the most recently used first
};

QPixmap ui::Image::Source::pixmap(const QSize &pixels, qreal devicePixelRatio)
{
    const auto known = std::find_if(m_drawn.begin(), m_drawn.end(), [&](const QPixmap &drawn) {
        return drawn.size() == pixels && qFuzzyCompare(drawn.devicePixelRatio(), devicePixelRatio);
    });
    if (known == m_drawn.end())
        m_drawn.prepend(draw(pixels, devicePixelRatio));
    else
        std::rotate(m_drawn.begin(), known, known + 1);
    if (m_drawn.size() > MaxDrawnPixmaps)
        m_drawn.removeLast();
    return m_drawn.first();
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

ui::Image::Image(const QImage &pixels) : Image(std::make_shared<Source>(pixels)) {}

ui::Image::Image(std::shared_ptr<Source> source)
    : m_source(std::move(source)), m_size(m_source->naturalSize())
{
}

std::optional<ui::Image> ui::Image::fromFile(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == "svg"_L1 || suffix == "svgz"_L1) {
        auto svg = std::make_unique<QSvgRenderer>();
        if (!svg->load(path) || svg->defaultSize().isEmpty())
            return std::nullopt;
        return Image(std::make_shared<Source>(std::move(svg)));
    }
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QImage pixels = reader.read();
    return pixels.isNull() ? std::nullopt : std::optional(Image(pixels));
}

std::optional<ui::Image> ui::Image::named(const QString &name)
{
    static QHash<QString, Image> known; // by path
    // Pixmaps must be destroyed before the application object.
    static const bool cleansUp = [] {
        qAddPostRoutine([] { known.clear(); });
        return true;
    }();
    Q_UNUSED(cleansUp)
    if (!isPlainName(name))
        return std::nullopt;
    const QString path = Bundle::main().folder() + "/icons/"_L1 + name;
    if (const auto found = known.constFind(path); found != known.constEnd())
        return *found;
    for (const auto suffix : {".svg"_L1, ".png"_L1}) {
        if (!QFileInfo::exists(path + suffix))
            continue;
        if (const auto image = fromFile(path + suffix)) {
            known.insert(path, *image);
            return image;
        }
    }
    return std::nullopt;
}

QPixmap ui::Image::pixmap(const QSizeF &size, qreal devicePixelRatio) const
{
    const QSize pixels(bounded(size.width() * devicePixelRatio), bounded(size.height() * devicePixelRatio));
    return pixels.isEmpty() ? QPixmap() : m_source->pixmap(pixels, devicePixelRatio);
}

void ui::Image::draw(QPainter &painter, const QRectF &bounds, ContentsGravity gravity) const
{
    if (m_size.isEmpty())
        return;
    QRectF target(QPointF(), scaledSize(m_size, bounds.size(), gravity));
    target.moveCenter(bounds.center());
    const qreal ratio = painter.device()->devicePixelRatioF();
    const QPixmap pixmap = this->pixmap(target.size(), ratio);
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
