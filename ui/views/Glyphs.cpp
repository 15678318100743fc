#include "Glyphs.h"
#include "Image.h"

#include <QPainter>
#include <QStyleOptionToolButton>
#include <QStylePainter>

namespace
{
constexpr qreal ButtonGlyphSize = 16;

/// Draws the bundle's picture of that name in one colour, using only its shape; nothing when there is none.
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
} // namespace

GlyphButton::GlyphButton(QWidget *parent) : QToolButton(parent)
{
    setAutoRaise(true);
}

void GlyphButton::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    option.text.clear();
    painter.drawComplexControl(QStyle::CC_ToolButton, option);
    QRectF place(0, 0, ButtonGlyphSize, ButtonGlyphSize);
    place.moveCenter(QRectF(rect()).center());
    QColor color = palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText);
    color.setAlphaF(underMouse() || hasFocus() ? 0.85F : 0.6F);
    drawGlyph(painter, m_glyph, place, color);
}

void GlyphView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawGlyph(painter, m_glyph, QRectF(rect()), palette().color(QPalette::PlaceholderText));
}
