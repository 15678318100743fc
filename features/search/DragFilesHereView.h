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

/// The view onto which a person drops a video file: outlines itself while a drag with a file hovers over it
/// and hands the first dropped file to its window's content controller (a FileSearching). Main thread
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

    QStringList acceptableTypes{fileURLType()};
    bool isReceivingDrag = false;

    void registerForDraggedTypes(const QStringList &types);
    QStringList registeredDraggedTypes() const { return m_registeredTypes; }
    /// How often types were registered.
    int registrationCount() const { return m_registrationCount; }

    /// Makes this view the only drop target: disables drops in its children and grandchildren. Called before
    /// the view is first shown.
    void awakeFromNib();

    DragOperation draggingEntered(const QMimeData *draggingPasteboard);
    void draggingExited();
    bool prepareForDragOperation(const QMimeData *draggingPasteboard) const;
    /// Whether the drop was accepted, also without a receiver.
    bool performDragOperation(const QMimeData *draggingPasteboard);

    /// Sends the drops on the whole window to this view.
    void takeDropsOf(ui::Window &window);
    /// Outlines `cover` (the list that replaces this view) like this view.
    void outlineToo(QWidget &cover);

Q_SIGNALS:
    void isReceivingDragChanged(bool receiving);

protected:
    bool event(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    friend class DropForwarder;
    void setReceivingDrag(bool receiving);
    void answer(QDragMoveEvent &event) const;

    QStringList m_registeredTypes;
    int m_registrationCount = 0;
    bool m_isAwake = false;
};
