#include "SurfaceView.h"

#include "ChromeColors.h"

#include <QPainter>

SurfaceView::SurfaceView(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void SurfaceView::setSurface(Surface surface)
{
    m_surface = surface;
    update();
}

void SurfaceView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const ChromeColors colors = ChromeColors::of(palette());
    const bool header = m_surface == Surface::Header;
    painter.fillRect(rect(), header ? colors.header : colors.panel);
    painter.fillRect(QRect(0, header ? height() - 1 : 0, width(), 1), colors.separator);
}
