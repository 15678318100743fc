#include "GlyphButton.h"

#include "Glyph.h"

#include <QStyleOptionToolButton>
#include <QStylePainter>

namespace
{
constexpr qreal GlyphSize = 16;
}

GlyphButton::GlyphButton(QWidget *parent) : QToolButton(parent)
{
    setAutoRaise(true);
}

void GlyphButton::setGlyph(const QString &name)
{
    m_glyph = name;
    update();
}

void GlyphButton::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    option.icon = QIcon();
    option.text.clear();
    painter.drawComplexControl(QStyle::CC_ToolButton, option);
    QRectF place(0, 0, GlyphSize, GlyphSize);
    place.moveCenter(QRectF(rect()).center());
    QColor color = palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText);
    color.setAlphaF(underMouse() || hasFocus() ? 0.85F : 0.6F);
    drawGlyph(painter, m_glyph, place, color);
}
