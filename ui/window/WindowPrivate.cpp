#include "WindowPrivate.h"
#include "EdgeGrip.h"
#include "FrameOverlay.h"
#include "TitleBar.h"
#include "WindowMenu.h"
#include <ui/system/WindowSystem.h>

#include <base/LocalizedString.h>
#include "ViewController.h"

#include <QAction>
#include <QScreen>
#include <QWindow>

using namespace Qt::StringLiterals;

void ui::Window::Private::build()
{
    titleBar = new TitleBar(q);
    grip = new EdgeGrip(q);
    overlay = new FrameOverlay(q);
    QObject::connect(titleBar, &TitleBar::moveRequested, q, [this] {
        if (q->windowHandle())
            q->windowHandle()->startSystemMove();
    });
    QObject::connect(titleBar, &TitleBar::zoomRequested, q, [this] { toggleZoom(); });
    QObject::connect(titleBar, &TitleBar::minimizeRequested, q, &QWidget::showMinimized);
    QObject::connect(titleBar, &TitleBar::closeRequested, q, &QWidget::close);
    QObject::connect(titleBar, &TitleBar::menuRequested, q,
                     [this](const QPoint &position) { showMenu(position); });

    closeAction = new QAction(String::localize(u"Close"_s), q);
    closeAction->setShortcut(Qt::CTRL | Qt::Key_W);
    QObject::connect(closeAction, &QAction::triggered, q, &QWidget::close);
    q->addAction(closeAction);

    WindowSystem &system = WindowSystem::shared();
    QObject::connect(&system, &WindowSystem::situationChanged, q, [this] { refreshFrame(); });
    look = WindowFrame::lookFor(system.situationOf(*q));
    m_normalMargin = look.margin;
    overlay->setLook(look);
    grip->setMargin(look.margin);
}

void ui::Window::Private::adoptContent(const std::shared_ptr<ViewController> &newController)
{
    controller = newController;
    contentView = controller->view();
    contentView->setParent(q);
    if (!controller->title().isEmpty())
        q->setWindowTitle(controller->title());
    QObject::connect(controller.get(), &ViewController::titleChanged, q, &QWidget::setWindowTitle);
    contentView->lower();
    applySizeLimits();
    layOut();
    if (q->isVisible())
        controller->notifyWillAppear();
    contentView->show();
    orderFocus();
    if (q->isVisible())
        controller->notifyDidAppear();
}

void ui::Window::Private::releaseContent()
{
    if (!controller)
        return;
    QObject::disconnect(controller.get(), nullptr, q, nullptr);
    if (contentView)
        contentView->setParent(nullptr);
    contentView.clear();
    controller.reset();
}

QRect ui::Window::Private::frameRect() const
{
    return q->rect().marginsRemoved({look.margin, look.margin, look.margin, look.margin});
}

QRect ui::Window::Private::contentRect() const
{
    return frameRect().adjusted(0, fullSizeContentView ? 0 : TitleBarHeight, 0, 0);
}

QSize ui::Window::Private::windowSizeFor(const QSize &contentSize) const
{
    return contentSize + QSize(2 * look.margin, 2 * look.margin + (fullSizeContentView ? 0 : TitleBarHeight));
}

void ui::Window::Private::applySizeLimits()
{
    if (!resizable) {
        q->setFixedSize(windowSizeFor(chosenContentSize));
        return;
    }
    const QSize viewMinimum = contentView ? contentView->minimumSize() : QSize();
    q->setMinimumSize(windowSizeFor(contentMinimum.expandedTo(viewMinimum)));
    q->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
}

void ui::Window::Private::layOut()
{
    const QRect frame = frameRect();
    if (contentView)
        contentView->setGeometry(contentRect());
    titleBar->setGeometry(frame.x(), frame.y(), frame.width(), TitleBarHeight);
    grip->setGeometry(q->rect());
    overlay->setGeometry(q->rect());
    publishFrame();
}

void ui::Window::Private::refreshFrame()
{
    const WindowFrame::Situation now = WindowSystem::shared().situationOf(*q);
    const WindowFrame::Look newLook = WindowFrame::lookFor(now);
    titleBar->setMaximized(now.maximized);
    grip->setVisible(resizable && !now.maximized && !now.fullScreen);
    const QRect geometry = q->geometry(); // the new limits may change it
    if (newLook != look) {
        look = newLook;
        applySizeLimits();
        overlay->setLook(look);
        grip->setMargin(look.margin);
        layOut();
        q->update();
    }
    if (now.maximized || now.fullScreen || now.tiled)
        m_geometryToReturnTo = now.tiled ? QRect() : q->normalGeometry();
    else
        keepFrameInPlace(geometry);
    publishFrame();
}

void ui::Window::Private::keepFrameInPlace(const QRect &geometry)
{
    // After un-maximising, the normal geometry may not have arrived yet.
    const QRect normal = m_geometryToReturnTo.value_or(geometry);
    m_geometryToReturnTo.reset();
    const int grown = look.margin - m_normalMargin;
    m_normalMargin = look.margin;
    if (grown != 0 && normal.isValid())
        q->setGeometry(normal.adjusted(-grown, -grown, grown, grown));
}

void ui::Window::Private::publishFrame()
{
    WindowSystem::shared().publishFrame(*q, look);
}

void ui::Window::Private::watchHandle()
{
    publishFrame();
    // The margins are published in device pixels, which depend on the screen.
    if (q->windowHandle())
        QObject::connect(q->windowHandle(), &QWindow::screenChanged, q, [this] { publishFrame(); });
}

void ui::Window::Private::orderFocus()
{
    const QList<QWidget *> last = titleBar->focusOrder();
    QWidget *previous = nullptr;
    for (QWidget *widget = q->nextInFocusChain(); widget && widget != q;
         widget = widget->nextInFocusChain()) {
        // The focus chain also contains menus and pop-ups, which are separate windows.
        const bool isContent = widget->window() == q && !titleBar->isAncestorOf(widget);
        if (isContent && widget->focusPolicy() != Qt::NoFocus)
            previous = widget;
    }
    for (QWidget *widget : last) {
        if (widget->window() != q)
            continue;
        if (previous)
            QWidget::setTabOrder(previous, widget);
        previous = widget;
    }
}

void ui::Window::Private::toggleZoom()
{
    if (!q->isZoomable())
        return;
    if (q->isMaximized())
        q->showNormal();
    else
        q->showMaximized();
}

void ui::Window::Private::showMenu(const QPoint &globalPosition)
{
    if (!q->windowHandle() || !WindowSystem::shared().showWindowMenu(q->windowHandle(), globalPosition))
        popUpWindowMenu(*q, globalPosition);
}
