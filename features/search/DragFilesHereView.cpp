#include "DragFilesHereView.h"

#include <base/StandardOutput.h>
#include <features/delivery/ExternalRequest.h>
#include <ui/views/BezierPath.h>
#include <ui/window/ViewController.h>
#include <ui/window/Window.h>

#include <QDragMoveEvent>
#include <QMimeData>
#include <QPainter>

#include <algorithm>
#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr qreal OutlinePoints = 4;

void drawOutline(QWidget &view)
{
    // A view cannot draw beyond its edge, so the stroke is moved in by half its width.
    constexpr qreal half = OutlinePoints / 2;
    BezierPath path = BezierPath::rect(QRectF(view.rect()).adjusted(half, half, -half, -half));
    path.setLineWidth(OutlinePoints);
    QPainter painter(&view);
    painter.setPen(view.palette().color(QPalette::Active, QPalette::Highlight));
    path.stroke(painter, view.height());
}

/// Draws the outline over a view that cannot draw it itself. Takes no input.
class DropOutline final : public QWidget
{
public:
    explicit DropOutline(QWidget *parent) : QWidget(parent)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
        hide();
    }

    void setShown(bool shown)
    {
        setGeometry(parentWidget()->rect());
        raise();
        setVisible(shown);
    }

protected:
    void paintEvent(QPaintEvent *) override { drawOutline(*this); }
};

QList<QUrl> urlsOf(const QMimeData *pasteboard)
{
    return pasteboard ? pasteboard->urls() : QList<QUrl>();
}

/// Whether a line of the pasteboard's list is neither a URL nor a comment, which begins with "#".
bool isMalformed(const QUrl &line)
{
    return (!line.isValid() || line.isRelative()) && !line.toEncoded().startsWith('#');
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
}

void DragFilesHereView::awakeFromNib()
{
    const auto views = findChildren<QWidget *>();
    for (QWidget *view : views) {
        if (view->parentWidget() == this || view->parentWidget()->parentWidget() == this)
            view->setAcceptDrops(false);
    }
}

DragOperation DragFilesHereView::draggingEntered(const QMimeData *draggingPasteboard)
{
    printLine(u"draggingEntered"_s);
    setReceivingDrag(prepareForDragOperation(draggingPasteboard));
    return m_isReceivingDrag ? DragOperation::Copy : DragOperation::None;
}

void DragFilesHereView::draggingExited()
{
    printLine(u"draggingEntered"_s);
    setReceivingDrag(false);
}

bool DragFilesHereView::prepareForDragOperation(const QMimeData *draggingPasteboard) const
{
    return std::ranges::any_of(urlsOf(draggingPasteboard), &QUrl::isLocalFile);
}

bool DragFilesHereView::performDragOperation(const QMimeData *draggingPasteboard)
{
    setReceivingDrag(false);
    const QList<QUrl> urls = urlsOf(draggingPasteboard);
    const auto file = std::ranges::find_if(urls, &QUrl::isLocalFile);
    if (file == urls.end() || std::ranges::any_of(urls, isMalformed))
        return false;
    printLine(file->toString(QUrl::FullyEncoded));
    const auto *shownIn = qobject_cast<ui::Window *>(window());
    const auto controller = shownIn ? shownIn->contentViewController() : nullptr;
    if (auto *receiver = dynamic_cast<FileSearching *>(controller.get()))
        receiver->searchForFile(*file, std::nullopt);
    return true;
}

void DragFilesHereView::takeDropsOf(ui::Window &window)
{
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

void DragFilesHereView::outlineToo(QWidget &cover)
{
    auto *outline = new DropOutline(&cover);
    connect(this, &DragFilesHereView::isReceivingDragChanged, outline, &DropOutline::setShown);
}

bool DragFilesHereView::event(QEvent *event)
{
    if (event->type() == QEvent::Polish && !std::exchange(m_isAwake, true))
        awakeFromNib();
    return QWidget::event(event);
}

bool DragFilesHereView::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
        moveOver(*static_cast<ui::Window *>(watched), *static_cast<QDragMoveEvent *>(event));
        return true;
    case QEvent::DragLeave:
        // Moving between two views of the window gives a leave and an enter event at once.
        m_isLeaving = true;
        QMetaObject::invokeMethod(this, &DragFilesHereView::leaveWindow, Qt::QueuedConnection);
        return true;
    case QEvent::Drop:
        m_isOverWindow = m_isLeaving = false;
        static_cast<QDropEvent *>(event)->setDropAction(Qt::CopyAction);
        event->setAccepted(performDragOperation(static_cast<QDropEvent *>(event)->mimeData()));
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

void DragFilesHereView::moveOver(const ui::Window &window, QDragMoveEvent &event)
{
    const int margin = window.shadowMargin();
    const QRect frame = window.rect().marginsRemoved({margin, margin, margin, margin});
    m_isLeaving = !frame.contains(event.position().toPoint());
    if (m_isLeaving)
        leaveWindow();
    else if (!std::exchange(m_isOverWindow, true))
        draggingEntered(event.mimeData());
    // Accepting a drag without an action refuses it. After an ignored enter event the toolkit would not tell
    // where the drag leaves.
    event.setDropAction(m_isReceivingDrag ? Qt::CopyAction : Qt::IgnoreAction);
    event.setAccepted(m_isReceivingDrag || event.type() == QEvent::DragEnter);
}

void DragFilesHereView::leaveWindow()
{
    if (std::exchange(m_isLeaving, false) && std::exchange(m_isOverWindow, false))
        draggingExited();
}

void DragFilesHereView::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    if (m_isReceivingDrag)
        drawOutline(*this);
}

void DragFilesHereView::setReceivingDrag(bool receiving)
{
    const bool changed = std::exchange(m_isReceivingDrag, receiving) != receiving;
    update();
    if (changed)
        Q_EMIT isReceivingDragChanged(receiving);
}
