#include "ProgressLine.h"

#include <ui/style/ChromeColors.h>
#include <ui/style/ChromePainting.h>

#include <QPainter>

#include <algorithm>

namespace
{
constexpr int Thickness = 6; // points
constexpr QSize Preferred(180, Thickness);
} // namespace

ProgressLine::ProgressLine(QWidget *parent) : QProgressBar(parent)
{
    setTextVisible(false);
}

QSize ProgressLine::sizeHint() const
{
    return Preferred;
}

QSize ProgressLine::minimumSizeHint() const
{
    return {Thickness, Thickness};
}

void ProgressLine::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const ChromeColors colors = ChromeColors::of(palette());
    QRectF line(0, (height() - Thickness) / 2.0, width(), Thickness);
    ChromePainting::fillRounded(painter, line, Thickness / 2.0, colors.pressedPill);
    const qreal span = std::max(1, maximum() - minimum());
    const qreal done = (value() - minimum()) / span * line.width();
    if (done <= 0)
        return;
    // A shorter bar than its thickness would not look like a line.
    const qreal length = std::max<qreal>(Thickness, done);
    if (layoutDirection() == Qt::RightToLeft)
        line.setLeft(line.right() - length);
    else
        line.setWidth(length);
    ChromePainting::fillRounded(painter, line, Thickness / 2.0, colors.accent);
}
