#pragma once
#include <QObject>
#include <QPointer>

class DragFilesHereView;
class QDragMoveEvent;
class Window;

/// Hands the drags over a window to its drop target, wherever on the window they are: the window is one
/// place, which a drag enters and leaves once. Its shadow is outside. A view of the window that takes the
/// drag itself (a field a text) is another place. A child of the window; harmless once the drop target is
/// gone. Main thread only.
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
