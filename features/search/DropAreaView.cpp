#include "DropAreaView.h"

#include <QPainter>

namespace
{
constexpr QSize DesignedSize{300, 196};
constexpr qreal CornerRadius = 18;
constexpr qreal LinePoints = 2;
// Matches the colour of secondary texts.
constexpr float LineStrength = 0.45F;
} // namespace

DropAreaView::DropAreaView(QWidget *parent) : QWidget(parent)
{
    // Its height follows from its texts at that width.
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Minimum);
}

QSize DropAreaView::sizeHint() const
{
    return DesignedSize;
}

void DropAreaView::paintEvent(QPaintEvent *)
{
    QColor color = palette().color(QPalette::PlaceholderText);
    color.setAlphaF(color.alphaF() * LineStrength);
    QPen pen(color, LinePoints, Qt::CustomDashLine, Qt::FlatCap);
    pen.setDashPattern({3, 2}); // in line widths
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen);
    constexpr qreal half = LinePoints / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), CornerRadius - half,
                            CornerRadius - half);
}
