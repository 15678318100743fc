#include "Shadow.h"
#include <ui/system/WindowFrame.h>

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <array>
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

struct Strength
{
    qreal shadow = 0;
    QColor outline;
};

Strength strengthFor(const Shadow::Look &look)
{
    const QColor outline = look.dark ? QColor(255, 255, 255, 32) : QColor(0, 0, 0, 34);
    const qreal shadow = look.dark ? 0.5 : 0.34;
    return {look.active ? shadow : shadow * 0.6, outline};
}

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

QPixmap renderPatch(const Shadow::Look &look)
{
    const Strength strength = strengthFor(look);
    QImage image = shadowMask(look.pixelRatio).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    {
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.fillRect(image.rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(strength.shadow)));
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(look.pixelRatio, look.pixelRatio);
        painter.setPen(QPen(strength.outline, 1));
        constexpr qreal radius = WindowFrame::CornerRadius + 0.5;
        painter.drawRoundedRect(frameInPatch().adjusted(-0.5, -0.5, 0.5, 0.5), radius, radius);
    }
    image.setDevicePixelRatio(look.pixelRatio);
    return QPixmap::fromImage(image);
}

/// Start and length in points of the three parts of a side, in the patch and at its destination.
struct Span
{
    int start;
    int length;
};
using Spans = std::array<Span, 3>;

Spans spans(int start, int length)
{
    return {Span{start, PatchSide}, Span{start + PatchSide, length - 2 * PatchSide},
            Span{start + length - PatchSide, PatchSide}};
}
} // namespace

const QPixmap &Shadow::patch(const Look &look)
{
    static Look cachedLook;
    static QPixmap cached;
    if (cached.isNull() || cachedLook != look) {
        cached = renderPatch(look);
        cachedLook = look;
    }
    return cached;
}

void Shadow::paint(QPainter &painter, const QRect &outer, const Look &look)
{
    const QPixmap &pixmap = patch(look);
    const Spans columns = spans(outer.x(), outer.width());
    const Spans rows = spans(outer.y(), outer.height());
    const Spans sources = spans(0, PatchSize);
    for (size_t row = 0; row < rows.size(); ++row) {
        for (size_t column = 0; column < columns.size(); ++column) {
            const QRect target(columns[column].start, rows[row].start, columns[column].length,
                               rows[row].length);
            if (target.isEmpty() || (row == 1 && column == 1))
                continue;
            const QRectF source(sources[column].start, sources[row].start, sources[column].length,
                                sources[row].length);
            painter.drawPixmap(target, pixmap,
                               QRectF(source.topLeft() * look.pixelRatio, source.size() * look.pixelRatio));
        }
    }
}
