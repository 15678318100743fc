#pragma once
#include <QStringList>
#include <QWidget>

class QDragMoveEvent;
class QMimeData;
namespace ui
{
class Window;
}

/// A drag target's answer; the numbers are the platform's.
enum class DragOperation
{
    None = 0,
    Copy = 1
};

/// The view onto which a person drops a video file: outlines itself while a drag with a file hovers over its
/// window and hands the first dropped file to the window's content controller (a FileSearching). Main thread
/// only.
///
/// The pasteboard's file-URL type is "text/uri-list", the only type for files between programs here. It also
/// carries links to pages, so a drag is acceptable when its list contains a file URL. The first file is
/// passed unchanged, even a folder; the search checks it.
class DragFilesHereView : public QWidget
{
    Q_OBJECT

public:
    /// For creation in code.
    explicit DragFilesHereView(const QRect &frame);
    /// For creation in a scene.
    explicit DragFilesHereView(QWidget *parent = nullptr);

    /// The file-URL type, the same for the whole process.
    static const QString &fileURLType();

    const QStringList acceptableTypes{fileURLType()};
    bool isReceivingDrag() const { return m_isReceivingDrag; }

    void registerForDraggedTypes(const QStringList &types);
    QStringList registeredDraggedTypes() const { return m_registeredTypes; }
    /// How often types were registered.
    int registrationCount() const { return m_registrationCount; }

    /// Disables drops in its children and grandchildren. Called before the view is first shown.
    void awakeFromNib();

    DragOperation draggingEntered(const QMimeData *draggingPasteboard);
    void draggingExited();
    bool prepareForDragOperation(const QMimeData *draggingPasteboard) const;
    /// Whether the drop was accepted, also without a receiver.
    bool performDragOperation(const QMimeData *draggingPasteboard);

    /// Takes the drags over the whole window, so that it is one target, entered and left once. Its shadow is
    /// not part of it, nor a view that takes the drag itself (a field for a text).
    void takeDropsOf(ui::Window &window);
    /// Outlines `cover` (the list that replaces this view) like this view.
    void outlineToo(QWidget &cover);

Q_SIGNALS:
    void isReceivingDragChanged(bool receiving);

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void moveOver(const ui::Window &window, QDragMoveEvent &event);
    void leaveWindow();
    void setReceivingDrag(bool receiving);

    QStringList m_registeredTypes;
    int m_registrationCount = 0;
    bool m_isReceivingDrag = false;
    bool m_isAwake = false;
    bool m_isOverWindow = false;
    bool m_isLeaving = false; // unless the drag enters another view of the window in the same event
};
