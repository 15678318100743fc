#include "DropForwarder.h"
#include "DragFilesHereView.h"
#include "DropOutline.h"

#include <QAbstractScrollArea>
#include <QEvent>

namespace
{
QWidget &surfaceOf(QWidget &view)
{
    const auto *area = qobject_cast<QAbstractScrollArea *>(&view);
    return area ? *area->viewport() : view;
}

bool isDrag(QEvent::Type type)
{
    return type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::DragLeave ||
           type == QEvent::Drop;
}
} // namespace

DropForwarder::DropForwarder(DragFilesHereView &target, QWidget &from)
    : QObject(&from),
      m_target(&target),
      m_from(from),
      m_surface(surfaceOf(from)),
      m_outline(new DropOutline(&from))
{
    m_surface.setAcceptDrops(true);
    m_surface.installEventFilter(this);
}

bool DropForwarder::eventFilter(QObject *watched, QEvent *event)
{
    if (!isDrag(event->type()) || !m_target)
        return QObject::eventFilter(watched, event);
    // Handed over directly: sent through the application it would come back to the view under the pointer.
    m_target->event(event);
    showOutline(m_target && m_target->isReceivingDrag);
    return true;
}

void DropForwarder::showOutline(bool shown)
{
    if (shown) {
        // Beside the scroll bar, but not below what lies over the view's insets.
        const QRect place = &m_surface == &m_from ? m_from.rect() : m_surface.geometry();
        m_outline->setGeometry(0, place.y(), m_from.width(), place.height());
        m_outline->raise();
    }
    m_outline->setVisible(shown);
}
