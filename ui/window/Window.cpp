#include "Window.h"

#include <ui/system/ActivationToken.h>
#include "WindowPrivate.h"
#include <ui/style/ChromeColors.h>
#include "EdgeGrip.h"
#include "FirstPaint.h"
#include "FrameOverlay.h"
#include "Shadow.h"
#include "TitleBar.h"
#include "TitleBarButton.h"
#include "WindowAccessible.h"
#include <ui/system/WindowSystem.h>

#include <base/Bundle.h>
#include "ViewController.h"

#include <QAction>
#include <QCloseEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr QSize DefaultContentSize{760, 640};

QList<Window *> &allWindows()
{
    static QList<Window *> windows;
    return windows;
}

QList<QPointer<QAction>> &commonActions()
{
    static QList<QPointer<QAction>> actions;
    return actions;
}
} // namespace

Window::Window(QWidget *parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint), d(std::make_unique<Private>(this))
{
    // Set even without a compositor, because one may start later; without one everything is painted opaque.
    setAttribute(Qt::WA_TranslucentBackground);
    WindowAccessible::install();
    allWindows() += this;
    d->build();
    setContentSize(DefaultContentSize);
    for (const QPointer<QAction> &action : commonActions()) {
        if (action)
            addAction(action);
    }
}

Window::~Window()
{
    allWindows().removeOne(this);
    // Done while the window is whole, because removing the view moves the focus.
    d->releaseContent();
}

QList<Window *> Window::openWindows()
{
    QList<Window *> open;
    for (Window *window : allWindows()) {
        if (window->isVisible())
            open += window;
    }
    return open;
}

void Window::addActionToEveryWindow(QAction &action)
{
    commonActions().removeAll(nullptr); // removes the destroyed ones
    commonActions() += &action;
    for (Window *window : allWindows())
        window->addAction(&action);
}

std::shared_ptr<ViewController> Window::contentViewController() const
{
    return d->controller;
}

void Window::setContentViewController(const std::shared_ptr<ViewController> &controller)
{
    if (controller == d->controller)
        return;
    d->releaseContent();
    if (controller)
        d->adoptContent(controller);
}

void Window::setContentSize(const QSize &size)
{
    d->contentMinimum = size.boundedTo(Private::ContentMinimum);
    d->chosenContentSize = size;
    d->applySizeLimits();
    resize(d->windowSizeFor(size));
}

QSize Window::contentSize() const
{
    return d->contentRect().size();
}

void Window::setTitlebarAppearsTransparent(bool transparent)
{
    d->titleBar->setTransparent(transparent);
}

bool Window::titlebarAppearsTransparent() const
{
    return d->titleBar->isTransparent();
}

void Window::setTitleVisibility(TitleVisibility visibility)
{
    d->titleBar->setTitleVisibility(visibility);
}

Window::TitleVisibility Window::titleVisibility() const
{
    return d->titleBar->titleVisibility();
}

void Window::setFullSizeContentView(bool fullSize)
{
    if (fullSize == d->fullSizeContentView)
        return;
    d->fullSizeContentView = fullSize;
    d->applySizeLimits();
    d->layOut();
}

bool Window::isFullSizeContentView() const
{
    return d->fullSizeContentView;
}

void Window::setStandardButtonHidden(StandardButton button, bool hidden)
{
    d->titleBar->setButtonHidden(button, hidden);
}

bool Window::isStandardButtonHidden(StandardButton button) const
{
    return d->titleBar->button(button)->isHidden();
}

void Window::setResizable(bool resizable)
{
    d->resizable = resizable;
    d->applySizeLimits();
    d->refreshFrame();
}

bool Window::isResizable() const
{
    return d->resizable;
}

bool Window::isZoomable() const
{
    return d->resizable && !isStandardButtonHidden(StandardButton::Zoom);
}

QAction *Window::closeAction() const
{
    return d->closeAction;
}

void Window::addTitlebarAccessoryViewController(
    const std::shared_ptr<TitlebarAccessoryViewController> &accessory)
{
    d->titleBar->addAccessory(accessory);
    d->orderFocus();
}

void Window::center()
{
    if (!screen())
        return;
    // The shadow may extend beyond the screen, but the frame may not, least of all its title bar.
    const int margin = d->look.margin;
    const QRect room = screen()->availableGeometry().marginsAdded({margin, margin, margin, margin});
    resize(size().boundedTo(room.size()));
    QRect place({}, size());
    place.moveCenter(room.center());
    move(qMax(place.left(), room.left()), qMax(place.top(), room.top()));
}

void Window::makeKeyAndOrderFront()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWithToken(*this);
}

void Window::makeFirstResponder(QWidget *widget)
{
    if (widget)
        widget->setFocus(Qt::OtherFocusReason);
    else if (focusWidget())
        focusWidget()->clearFocus();
}

int Window::shadowMargin() const
{
    return d->look.margin;
}

void Window::setVisible(bool visible)
{
    // Show events also come when a window is un-minimised.
    const bool appears = visible && !isVisible();
    const std::shared_ptr<ViewController> controller = d->controller;
    if (appears) {
        create();
        d->orderFocus();
        d->refreshFrame();
        if (controller)
            controller->notifyWillAppear();
    }
    QWidget::setVisible(visible);
    if (appears && controller)
        controller->notifyDidAppear();
    // Last, because a receiver may destroy the window.
    if (!visible && std::exchange(d->closing, false))
        Q_EMIT closed();
}

bool Window::event(QEvent *event)
{
    if (event->type() == QEvent::WinIdChange)
        d->watchHandle();
    return QWidget::event(event);
}

void Window::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        d->refreshFrame();
    else if (event->type() == QEvent::ActivationChange || event->type() == QEvent::PaletteChange)
        update();
}

void Window::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    d->closing = event->isAccepted() && isVisible();
}

void Window::resizeEvent(QResizeEvent *)
{
    d->layOut();
}

void Window::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (d->look.margin > 0)
        Shadow::paint(painter, rect(),
                      {devicePixelRatioF(), isActiveWindow(), ChromeColors::isDark(palette())});
    painter.fillRect(d->frameRect(), palette().color(QPalette::Window));
    FirstPaint::notice();
}
