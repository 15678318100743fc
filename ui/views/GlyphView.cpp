#include "GlyphView.h"

#include "Glyph.h"

#include <QPainter>

GlyphView::GlyphView(QWidget *parent) : QWidget(parent) {}

void GlyphView::setGlyph(const QString &name)
{
    m_glyph = name;
    update();
}

void GlyphView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawGlyph(painter, m_glyph, QRectF(rect()), palette().color(QPalette::PlaceholderText));
}
