#include "EdgeGrip.h"
#include <ui/system/WindowFrame.h>

#include <QMouseEvent>
#include <QWindow>

EdgeGrip::EdgeGrip(QWidget *window) : QWidget(window)
{
    setMouseTracking(true);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
}

void EdgeGrip::setMargin(int margin)
{
    m_margin = margin;
    setMask(WindowFrame::grabZone(size(), m_margin));
}

void EdgeGrip::resizeEvent(QResizeEvent *)
{
    setMask(WindowFrame::grabZone(size(), m_margin));
}

void EdgeGrip::mouseMoveEvent(QMouseEvent *event)
{
    const Qt::CursorShape shape =
        WindowFrame::cursorFor(WindowFrame::edgesAt(event->position().toPoint(), size(), m_margin));
    if (cursor().shape() != shape)
        setCursor(shape);
}

void EdgeGrip::mousePressEvent(QMouseEvent *event)
{
    const Qt::Edges edges = WindowFrame::edgesAt(event->position().toPoint(), size(), m_margin);
    if (event->button() != Qt::LeftButton || !edges)
        return;
    if (QWindow *handle = window()->windowHandle())
        handle->startSystemResize(edges);
}
