#include "FrameOverlay.h"
#include <ui/style/ChromeColors.h>
#include "Shadow.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

namespace
{
constexpr int Radius = WindowFrame::CornerRadius;

QRegion corners(const QRect &frame)
{
    QRegion region;
    region += QRect(frame.left(), frame.top(), Radius, Radius);
    region += QRect(frame.right() - Radius + 1, frame.top(), Radius, Radius);
    region += QRect(frame.left(), frame.bottom() - Radius + 1, Radius, Radius);
    region += QRect(frame.right() - Radius + 1, frame.bottom() - Radius + 1, Radius, Radius);
    return region;
}
} // namespace

FrameOverlay::FrameOverlay(QWidget *window) : QWidget(window)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
}

void FrameOverlay::setLook(const WindowFrame::Look &look)
{
    m_look = look;
    updateMask();
    setVisible(look.rounded || look.hairline);
    update();
}

QRect FrameOverlay::frame() const
{
    return rect().marginsRemoved({m_look.margin, m_look.margin, m_look.margin, m_look.margin});
}

void FrameOverlay::updateMask()
{
    QRegion region;
    if (m_look.rounded)
        region += corners(frame());
    if (m_look.hairline)
        region += QRegion(frame()).subtracted(frame().adjusted(1, 1, -1, -1));
    setMask(region);
}

bool FrameOverlay::event(QEvent *event)
{
    // The shadow in the corners is lighter while another window is active.
    if (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate)
        update();
    return QWidget::event(event);
}

void FrameOverlay::resizeEvent(QResizeEvent *)
{
    updateMask();
}

void FrameOverlay::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_look.rounded) {
        QPainterPath outside;
        outside.setFillRule(Qt::OddEvenFill);
        outside.addRect(frame());
        outside.addRoundedRect(frame(), Radius, Radius);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        painter.fillPath(outside, Qt::black);
    }
    if (m_look.margin > 0) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
        Shadow::paint(painter, rect(),
                      {devicePixelRatioF(), isActiveWindow(), ChromeColors::isDark(palette())});
    }
    if (m_look.hairline) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        const QColor text = palette().color(QPalette::WindowText);
        painter.setPen(QPen(QColor(text.red(), text.green(), text.blue(), 60), 1));
        const qreal radius = m_look.rounded ? Radius - 0.5 : 0;
        painter.drawRoundedRect(QRectF(frame()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    }
}
