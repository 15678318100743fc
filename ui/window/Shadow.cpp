#include "Shadow.h"

#include <ui/style/ChromeColors.h>
#include <ui/system/WindowFrame.h>

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QWidget>
#include <qdrawutil.h>

#include <algorithm>
#include <vector>

namespace
{
constexpr int Margin = WindowFrame::ShadowMargin;
// The length from the outer corner to where the shadow no longer changes along an edge. A multiple of four
// keeps the patches on whole pixels at scales in steps of a quarter.
constexpr int PatchSide = 64;
constexpr int PatchSize = 2 * PatchSide + 4;
constexpr int DropOffset = 6;
constexpr int BlurBoxSize = 17; // three passes approximate a Gaussian of 8.5 points
constexpr int BlurPasses = 3;

struct Look
{
    qreal pixelRatio = 1;
    bool active = true;
    bool dark = false;

    bool operator==(const Look &) const = default;
};

/// One running-sum pass over `count` values that lie `step` apart. `line` has room for them and for an empty
/// box at both ends.
void blurLine(uchar *values, qsizetype step, int count, int box, std::vector<uchar> &line)
{
    const int reach = box / 2;
    uchar *const begin = line.data() + box;
    for (int i = 0; i < count; ++i)
        begin[i] = values[i * step];
    int sum = 0;
    for (int i = 0; i <= reach; ++i)
        sum += begin[i];
    for (int i = 0; i < count; ++i) {
        values[i * step] = static_cast<uchar>(sum / (2 * reach + 1));
        sum += begin[i + reach + 1] - begin[i - reach];
    }
}

void blur(QImage &mask, int box)
{
    std::vector<uchar> line(static_cast<size_t>(std::max(mask.width(), mask.height()) + 2 * box));
    for (int pass = 0; pass < BlurPasses; ++pass) {
        for (int y = 0; y < mask.height(); ++y)
            blurLine(mask.scanLine(y), 1, mask.width(), box, line);
        for (int x = 0; x < mask.width(); ++x)
            blurLine(mask.bits() + x, mask.bytesPerLine(), mask.height(), box, line);
    }
}

QRectF frameInPatch()
{
    return QRectF(0, 0, PatchSize, PatchSize).adjusted(Margin, Margin, -Margin, -Margin);
}

QImage shadowMask(qreal pixelRatio)
{
    const int side = qRound(PatchSize * pixelRatio);
    QImage mask(side, side, QImage::Format_Alpha8);
    mask.fill(0);
    {
        QPainter painter(&mask);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(pixelRatio, pixelRatio);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::black);
        painter.drawRoundedRect(frameInPatch().translated(0, DropOffset), WindowFrame::CornerRadius,
                                WindowFrame::CornerRadius);
    }
    blur(mask, qRound(BlurBoxSize * pixelRatio));
    return mask;
}

QPixmap renderPatch(const Look &look)
{
    const float strength = (look.dark ? 0.5F : 0.34F) * (look.active ? 1 : 0.6F);
    const QColor outline = look.dark ? QColor(255, 255, 255, 32) : QColor(0, 0, 0, 34);
    QImage image = shadowMask(look.pixelRatio).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    {
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.fillRect(image.rect(), QColor::fromRgbF(0, 0, 0, strength));
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(look.pixelRatio, look.pixelRatio);
        painter.setPen(QPen(outline, 1));
        constexpr qreal radius = WindowFrame::CornerRadius + 0.5;
        painter.drawRoundedRect(frameInPatch().adjusted(-0.5, -0.5, 0.5, 0.5), radius, radius);
    }
    image.setDevicePixelRatio(look.pixelRatio);
    return QPixmap::fromImage(image);
}

const QPixmap &patchFor(const Look &look)
{
    static Look cachedLook;
    static QPixmap cached;
    if (cached.isNull() || cachedLook != look) {
        cached = renderPatch(look);
        cachedLook = look;
    }
    return cached;
}
} // namespace

void paintShadow(QPainter &painter, const QWidget &widget)
{
    const Look look{widget.devicePixelRatioF(), widget.isActiveWindow(),
                    ChromeColors::isDark(widget.palette())};
    const QPixmap &patch = patchFor(look);
    const QMargins corners(PatchSide, PatchSide, PatchSide, PatchSide);
    qDrawBorderPixmap(&painter, widget.rect(), corners, patch, patch.rect(), corners * look.pixelRatio);
}
