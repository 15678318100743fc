#pragma once
#include <QObject>
#include <QPointer>

class DragFilesHereView;
class QDragMoveEvent;
class Window;

/// Hands the drags over a window to its drop target, wherever on the window they are. The target sees one
/// entry and one exit for the whole window, however many views the drag crosses. The drag has left the window
/// while it is over the shadow, or over a view that takes it itself, as the search field takes a text. The
/// window owns the forwarder, which does nothing once the drop target is gone. Main thread only.
class DropForwarder final : public QObject
{
    Q_OBJECT

public:
    DropForwarder(DragFilesHereView &target, Window &window);

    /// Whether drags over `window` are handed to `target` already.
    static bool existsBetween(const DragFilesHereView &target, const Window &window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void moveTo(QDragMoveEvent &event);
    void leave();

    QPointer<DragFilesHereView> m_target;
    Window &m_window;
    bool m_isOver = false;
    bool m_isLeaving = false; // unless the drag enters another view of the window within the same event
};
