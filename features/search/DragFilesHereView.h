#pragma once
#include <QStringList>
#include <QWidget>

class QDragMoveEvent;
class QMimeData;
class Window;

/// What a drag target answers; the numbers are the platform's.
enum class DragOperation
{
    None = 0,
    Copy = 1
};

/// The view onto which a person drops a video file: outlines itself while a drag with a file hovers over it
/// and hands the first dropped file to its window's content controller (a DroppedFileReceiver). Main thread
/// only.
///
/// The pasteboard's file-URL type is "text/uri-list", the one type in which files travel between programs
/// here. Links to pages travel in it too, so a drag is acceptable when its list holds a file URL. The first
/// file is handed on as it is, a folder as well, and the search judges it.
class DragFilesHereView : public QWidget
{
    Q_OBJECT

public:
    /// As code makes it.
    explicit DragFilesHereView(const QRect &frame);
    /// As a scene makes it.
    explicit DragFilesHereView(QWidget *parent = nullptr);

    /// The file-URL type, the same for the whole process.
    static const QString &fileURLType();

    QStringList acceptableTypes{fileURLType()};
    bool isReceivingDrag = false;

    void registerForDraggedTypes(const QStringList &types);
    QStringList registeredDraggedTypes() const { return m_registeredTypes; }
    /// How often types were registered.
    int registrationCount() const { return m_registrationCount; }

    /// Leaves drags to this view alone: subviews and theirs (no deeper) take none. Called before the view
    /// first shows.
    void awakeFromNib();

    DragOperation draggingEntered(const QMimeData *draggingPasteboard);
    void draggingExited();
    bool prepareForDragOperation(const QMimeData *draggingPasteboard) const;
    /// Whether the drop was taken, also when nobody was there to search for it.
    bool performDragOperation(const QMimeData *draggingPasteboard);

    /// Hands the drops on the whole window to this view.
    void takeDropsOf(Window &window);
    /// Outlines `cover` (the list, which shows in place of this view) like this view.
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
