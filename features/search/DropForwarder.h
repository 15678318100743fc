#pragma once
#include <QObject>
#include <QPointer>

class DragFilesHereView;
class QDragMoveEvent;
namespace ui
{
class Window;
}

/// Forwards drags over a window to its drop target, so that the whole window is one target, entered and left
/// once. Its shadow is not part of it, nor a view that takes the drag itself (a field for a text). A child of
/// the window; inactive once the drop target is destroyed. Main thread only.
class DropForwarder final : public QObject
{
    Q_OBJECT

public:
    DropForwarder(DragFilesHereView &target, ui::Window &window);

    /// Whether drags over `window` are already forwarded to `target`.
    static bool existsBetween(const DragFilesHereView &target, const ui::Window &window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void moveTo(QDragMoveEvent &event);
    void leave();

    QPointer<DragFilesHereView> m_target;
    ui::Window &m_window;
    bool m_isOver = false;
    bool m_isLeaving = false; // unless the drag enters another view of the window in the same event
};
