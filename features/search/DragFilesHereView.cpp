#include "DragFilesHereView.h"
#include "DropForwarder.h"
#include "DropOutline.h"
#include "PasteboardURLs.h"

#include <base/StandardOutput.h>
#include <features/delivery/FileSearching.h>
#include <ui/window/ViewController.h>
#include <ui/window/Window.h>

#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace
{
void refuseDrags(const QWidget &view, int levels)
{
    const auto subviews = view.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *subview : subviews) {
        subview->setAcceptDrops(false);
        if (levels > 1)
            refuseDrags(*subview, levels - 1);
    }
}
} // namespace

DragFilesHereView::DragFilesHereView(const QRect &frame) : QWidget(nullptr)
{
    setGeometry(frame);
    registerForDraggedTypes(acceptableTypes);
    registerForDraggedTypes(acceptableTypes);
}

DragFilesHereView::DragFilesHereView(QWidget *parent) : QWidget(parent)
{
    registerForDraggedTypes(acceptableTypes);
}

const QString &DragFilesHereView::fileURLType()
{
    static const QString type = u"text/uri-list"_s;
    return type;
}

void DragFilesHereView::registerForDraggedTypes(const QStringList &types)
{
    m_registeredTypes = types;
    ++m_registrationCount;
    setAcceptDrops(!types.isEmpty());
}

void DragFilesHereView::awakeFromNib()
{
    refuseDrags(*this, 2);
}

DragOperation DragFilesHereView::draggingEntered(const QMimeData *draggingPasteboard)
{
    printLine(u"draggingEntered"_s);
    setReceivingDrag(prepareForDragOperation(draggingPasteboard));
    return isReceivingDrag ? DragOperation::Copy : DragOperation::None;
}

void DragFilesHereView::draggingExited()
{
    printLine(u"draggingEntered"_s);
    setReceivingDrag(false);
}

bool DragFilesHereView::prepareForDragOperation(const QMimeData *draggingPasteboard) const
{
    return draggingPasteboard && draggingPasteboard->formats().contains(fileURLType()) &&
           offersFile(draggingPasteboard, fileURLType());
}

bool DragFilesHereView::performDragOperation(const QMimeData *draggingPasteboard)
{
    setReceivingDrag(false);
    const auto urls = readURLs(draggingPasteboard, fileURLType());
    if (!urls)
        return false;
    const auto file = std::find_if(urls->begin(), urls->end(), std::mem_fn(&QUrl::isLocalFile));
    if (file == urls->end())
        return false;
    const QUrl &url = *file;
    printLine(url.toString(QUrl::FullyEncoded));
    const auto *shownIn = qobject_cast<ui::Window *>(window());
    const auto controller = shownIn ? shownIn->contentViewController() : nullptr;
    if (auto *receiver = dynamic_cast<FileSearching *>(controller.get()))
        receiver->searchForFile(url, std::nullopt);
    return true;
}

void DragFilesHereView::takeDropsOf(ui::Window &window)
{
    if (DropForwarder::existsBetween(*this, window))
        return;
    new DropForwarder(*this, window); // a child of the window
    setAcceptDrops(false);            // the window takes the drops here, too
}

void DragFilesHereView::outlineToo(QWidget &cover)
{
    auto *outline = new DropOutline(&cover);
    connect(this, &DragFilesHereView::isReceivingDragChanged, outline, &DropOutline::setShown);
}

bool DragFilesHereView::event(QEvent *event)
{
    if (event->type() == QEvent::Polish && !m_isAwake) {
        m_isAwake = true;
        awakeFromNib();
    }
    return QWidget::event(event);
}

void DragFilesHereView::dragEnterEvent(QDragEnterEvent *event)
{
    draggingEntered(event->mimeData());
    answer(*event);
}

void DragFilesHereView::dragMoveEvent(QDragMoveEvent *event)
{
    answer(*event);
}

/// Accepting a drag without an action refuses it. An ignored event would go to the views behind, and this one
/// would not see where the drag leaves.
void DragFilesHereView::answer(QDragMoveEvent &event) const
{
    event.setDropAction(isReceivingDrag ? Qt::CopyAction : Qt::IgnoreAction);
    event.setAccepted(isReceivingDrag || event.type() == QEvent::DragEnter);
}

void DragFilesHereView::dragLeaveEvent(QDragLeaveEvent *)
{
    draggingExited();
}

void DragFilesHereView::dropEvent(QDropEvent *event)
{
    if (!prepareForDragOperation(event->mimeData())) {
        setReceivingDrag(false);
        return event->ignore();
    }
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(performDragOperation(event->mimeData()));
}

void DragFilesHereView::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    if (!isReceivingDrag)
        return;
    QPainter painter(this);
    drawDropOutline(painter, rect(), palette());
}

void DragFilesHereView::setReceivingDrag(bool receiving)
{
    const bool changed = isReceivingDrag != receiving;
    isReceivingDrag = receiving;
    update();
    if (changed)
        Q_EMIT isReceivingDragChanged(receiving);
}
