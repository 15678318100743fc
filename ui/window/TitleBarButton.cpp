#include "TitleBarButton.h"
#include <ui/style/ChromeColors.h>

#include <base/LocalizedString.h>

#include <QPainter>

using namespace Qt::StringLiterals;

namespace
{
constexpr qreal GlyphHalf = 3.25;
constexpr qreal GlyphPen = 1.5;
constexpr qreal FocusPen = 2;

QString nameOf(TitleBarButton::Glyph glyph)
{
    switch (glyph) {
    case TitleBarButton::Glyph::Minimize:
        return String::localize(u"Minimize"_s);
    case TitleBarButton::Glyph::Maximize:
        return String::localize(u"Maximize"_s);
    case TitleBarButton::Glyph::Restore:
        return String::localize(u"Restore"_s);
    case TitleBarButton::Glyph::Close:
        break;
    }
    return String::localize(u"Close"_s);
}
} // namespace

TitleBarButton::TitleBarButton(Glyph glyph, QWidget *parent) : QAbstractButton(parent), m_glyph(glyph)
{
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setFixedSize(Diameter, Diameter);
    setAccessibleName(nameOf(glyph));
}

void TitleBarButton::setGlyph(Glyph glyph)
{
    if (m_glyph == glyph)
        return;
    m_glyph = glyph;
    setAccessibleName(nameOf(glyph));
    update();
}

void TitleBarButton::paintEvent(QPaintEvent *)
{
    const ChromeColors colors = ChromeColors::of(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isDown() ? colors.pressedPill : underMouse() ? colors.hoveredPill : colors.pill);
    painter.drawEllipse(rect());
    if (hasFocus()) {
        constexpr qreal inset = FocusPen / 2;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(colors.accent, FocusPen));
        painter.drawEllipse(QRectF(rect()).adjusted(inset, inset, -inset, -inset));
    }
    const QColor glyphColor = isActiveWindow()
                                  ? colors.secondaryText
                                  : ChromeColors::mixed(colors.header, colors.secondaryText, 0.55);
    painter.setPen(QPen(glyphColor, GlyphPen, Qt::SolidLine, Qt::RoundCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    painter.translate(QRectF(rect()).center());
    drawGlyph(painter);
}

void TitleBarButton::drawGlyph(QPainter &painter) const
{
    switch (m_glyph) {
    case Glyph::Minimize:
        painter.drawLine(QPointF(-GlyphHalf + 1, 0.5), QPointF(GlyphHalf - 1, 0.5));
        break;
    case Glyph::Maximize:
        painter.drawRect(QRectF(-GlyphHalf, -GlyphHalf, 2 * GlyphHalf, 2 * GlyphHalf));
        break;
    case Glyph::Restore:
        painter.drawRect(QRectF(-GlyphHalf, -GlyphHalf + 2, 2 * GlyphHalf - 2, 2 * GlyphHalf - 2));
        painter.drawPolyline(
            QPolygonF{{-GlyphHalf + 2, -GlyphHalf}, {GlyphHalf, -GlyphHalf}, {GlyphHalf, GlyphHalf - 2}});
        break;
    case Glyph::Close:
        painter.drawLine(QPointF(-GlyphHalf + 0.5, -GlyphHalf + 0.5),
                         QPointF(GlyphHalf - 0.5, GlyphHalf - 0.5));
        painter.drawLine(QPointF(GlyphHalf - 0.5, -GlyphHalf + 0.5),
                         QPointF(-GlyphHalf + 0.5, GlyphHalf - 0.5));
        break;
    }
}
