#include "DropForwarder.h"
#include "DragFilesHereView.h"

#include <ui/window/Window.h>

#include <QDragMoveEvent>

#include <algorithm>
#include <utility>

DropForwarder::DropForwarder(DragFilesHereView &target, ui::Window &window)
    : QObject(&window), m_target(&target), m_window(window)
{
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

bool DropForwarder::existsBetween(const DragFilesHereView &target, const ui::Window &window)
{
    const auto forwarders = window.findChildren<DropForwarder *>(QString(), Qt::FindDirectChildrenOnly);
    return std::any_of(forwarders.begin(), forwarders.end(),
                       [&target](const DropForwarder *forwarder) { return forwarder->m_target == &target; });
}

bool DropForwarder::eventFilter(QObject *watched, QEvent *event)
{
    if (!m_target)
        return QObject::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
        moveTo(*static_cast<QDragMoveEvent *>(event));
        return true;
    case QEvent::DragLeave:
        // Moving between two views of the window gives a leave and an enter event at once.
        m_isLeaving = true;
        QMetaObject::invokeMethod(this, &DropForwarder::leave, Qt::QueuedConnection);
        return true;
    case QEvent::Drop:
        m_isOver = m_isLeaving = false;
        // Delivered directly: the application would send it to the view under the pointer again.
        m_target->event(event);
        return true;
    default:
        return QObject::eventFilter(watched, event);
    }
}

void DropForwarder::moveTo(QDragMoveEvent &event)
{
    const int margin = m_window.shadowMargin();
    const QRect frame = m_window.rect().marginsRemoved({margin, margin, margin, margin});
    m_isLeaving = !frame.contains(event.position().toPoint());
    if (m_isLeaving) {
        leave();
    } else if (!m_isOver) {
        m_isOver = true;
        m_target->draggingEntered(event.mimeData());
    }
    m_target->answer(event);
}

void DropForwarder::leave()
{
    if (!m_isLeaving || !m_target)
        return;
    m_isLeaving = false;
    if (std::exchange(m_isOver, false))
        m_target->draggingExited();
}
