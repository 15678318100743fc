#include "Window.h"

#include "WindowPrivate.h"
#include <ui/style/ChromeColors.h>
#include "EdgeGrip.h"
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

QList<ui::Window *> &allWindows()
{
    static QList<ui::Window *> windows;
    return windows;
}

QList<QPointer<QAction>> &commonActions()
{
    static QList<QPointer<QAction>> actions;
    return actions;
}
} // namespace

ui::Window::Window(QWidget *parent)
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

ui::Window::~Window()
{
    allWindows().removeOne(this);
    // Done while the window is whole, because removing the view moves the focus.
    d->releaseContent();
}

QList<ui::Window *> ui::Window::openWindows()
{
    QList<ui::Window *> open;
    for (ui::Window *window : allWindows()) {
        if (window->isVisible())
            open += window;
    }
    return open;
}

void ui::Window::addActionToEveryWindow(QAction &action)
{
    commonActions().removeAll(nullptr); // removes the destroyed ones
    commonActions() += &action;
    for (ui::Window *window : allWindows())
        window->addAction(&action);
}

std::shared_ptr<ViewController> ui::Window::contentViewController() const
{
    return d->controller;
}

void ui::Window::setContentViewController(const std::shared_ptr<ViewController> &controller)
{
    if (controller == d->controller)
        return;
    d->releaseContent();
    if (controller)
        d->adoptContent(controller);
}

void ui::Window::setContentSize(const QSize &size)
{
    d->contentMinimum = size.boundedTo(Private::ContentMinimum);
    d->chosenContentSize = size;
    d->applySizeLimits();
    resize(d->windowSizeFor(size));
}

QSize ui::Window::contentSize() const
{
    return d->contentRect().size();
}

void ui::Window::setTitlebarAppearsTransparent(bool transparent)
{
    d->titleBar->setTransparent(transparent);
}

bool ui::Window::titlebarAppearsTransparent() const
{
    return d->titleBar->isTransparent();
}

void ui::Window::setTitleVisibility(TitleVisibility visibility)
{
    d->titleBar->setTitleVisibility(visibility);
}

ui::Window::TitleVisibility ui::Window::titleVisibility() const
{
    return d->titleBar->titleVisibility();
}

void ui::Window::setFullSizeContentView(bool fullSize)
{
    if (fullSize == d->fullSizeContentView)
        return;
    d->fullSizeContentView = fullSize;
    d->applySizeLimits();
    d->layOut();
}

bool ui::Window::isFullSizeContentView() const
{
    return d->fullSizeContentView;
}

void ui::Window::setStandardButtonHidden(StandardButton button, bool hidden)
{
    d->titleBar->setButtonHidden(button, hidden);
}

bool ui::Window::isStandardButtonHidden(StandardButton button) const
{
    return d->titleBar->button(button)->isHidden();
}

void ui::Window::setResizable(bool resizable)
{
    d->resizable = resizable;
    d->applySizeLimits();
    d->refreshFrame();
}

bool ui::Window::isResizable() const
{
    return d->resizable;
}

bool ui::Window::isZoomable() const
{
    return d->resizable && !isStandardButtonHidden(StandardButton::Zoom);
}

QAction *ui::Window::closeAction() const
{
    return d->closeAction;
}

void ui::Window::addTitlebarAccessoryViewController(
    const std::shared_ptr<TitlebarAccessoryViewController> &accessory)
{
    d->titleBar->addAccessory(accessory);
    d->orderFocus();
}

void ui::Window::center()
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

void ui::Window::makeKeyAndOrderFront()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    WindowSystem::shared().activate(*this);
}

void ui::Window::makeFirstResponder(QWidget *widget)
{
    if (widget)
        widget->setFocus(Qt::OtherFocusReason);
    else if (focusWidget())
        focusWidget()->clearFocus();
}

int ui::Window::shadowMargin() const
{
    return d->look.margin;
}

void ui::Window::setVisible(bool visible)
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

bool ui::Window::event(QEvent *event)
{
    if (event->type() == QEvent::WinIdChange)
        d->watchHandle();
    return QWidget::event(event);
}

void ui::Window::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        d->refreshFrame();
    else if (event->type() == QEvent::ActivationChange || event->type() == QEvent::PaletteChange)
        update();
}

void ui::Window::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    d->closing = event->isAccepted() && isVisible();
}

void ui::Window::resizeEvent(QResizeEvent *)
{
    d->layOut();
}

void ui::Window::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (d->look.margin > 0)
        Shadow::paint(painter, rect(),
                      {devicePixelRatioF(), isActiveWindow(), ChromeColors::isDark(palette())});
    painter.fillRect(d->frameRect(), palette().color(QPalette::Window));
}
