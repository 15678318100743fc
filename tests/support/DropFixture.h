#pragma once
#include "RawPasteboard.h"

#include <features/delivery/ExternalRequest.h>
#include <features/search/DragFilesHereView.h>
#include <ui/window/ViewController.h>
#include <ui/window/Window.h>

#include <QApplication>
#include <QDragEnterEvent>

#include <memory>

/// A content controller that notes the files dropped.
class ReceivingController final : public ViewController, public FileSearching
{
public:
    void searchForFile(const QUrl &url, const std::optional<ExternalRequestInfo> &) override { urls += url; }
    QList<QUrl> urls;
};

/// A pasteboard with those URLs.
inline std::unique_ptr<RawPasteboard> pasteboardWith(const QStringList &urls)
{
    return std::make_unique<RawPasteboard>(QStringLiteral("text/uri-list"),
                                           urls.join(QStringLiteral("\r\n")).toUtf8());
}

/// A pasteboard without files.
inline QMimeData *plainText()
{
    static QMimeData text;
    text.setText(QStringLiteral("just a text"));
    return &text;
}

/// Drags over a widget as the window system does it. The answers say whether the drag was taken: it was
/// accepted, and for a copy or a move.
class Dragging final
{
public:
    /// Shift asks for a move where that is possible.
    Dragging(QWidget &widget, const QMimeData &pasteboard, Qt::KeyboardModifiers held = {})
        : m_widget(widget), m_pasteboard(pasteboard), m_held(held)
    {
    }
    /// The toolkit remembers where a drag is by the bare address, which must not outlive the widget.
    ~Dragging()
    {
        if (m_isOver)
            leave();
    }
    Q_DISABLE_COPY_MOVE(Dragging)

    bool enter()
    {
        QDragEnterEvent event(m_widget.rect().center(), Qt::CopyAction | Qt::MoveAction, &m_pasteboard,
                              Qt::LeftButton, m_held);
        event.ignore();
        QCoreApplication::sendEvent(&m_widget, &event);
        action = event.dropAction();
        m_isOver = event.isAccepted();
        return m_isOver && action != Qt::IgnoreAction;
    }
    bool move()
    {
        QDragMoveEvent event(m_widget.rect().center(), Qt::CopyAction | Qt::MoveAction, &m_pasteboard,
                             Qt::LeftButton, m_held);
        event.ignore();
        QCoreApplication::sendEvent(&m_widget, &event);
        action = event.dropAction();
        return event.isAccepted() && action != Qt::IgnoreAction;
    }
    void leave()
    {
        m_isOver = false;
        QDragLeaveEvent event;
        QCoreApplication::sendEvent(&m_widget, &event);
        QCoreApplication::sendPostedEvents(); // that no other view of the window is entered
    }
    bool drop()
    {
        m_isOver = false;
        QDropEvent event(m_widget.rect().center(), Qt::CopyAction | Qt::MoveAction, &m_pasteboard,
                         Qt::LeftButton, m_held);
        event.ignore();
        QCoreApplication::sendEvent(&m_widget, &event);
        action = event.dropAction();
        return event.isAccepted();
    }

    Qt::DropAction action = Qt::IgnoreAction;

private:
    QWidget &m_widget;
    const QMimeData &m_pasteboard;
    Qt::KeyboardModifiers m_held;
    bool m_isOver = false; // accepted, and neither left nor dropped
};
