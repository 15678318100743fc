#include "Window.h"

#include "DrawnFrame.h"
#include "TitleBar.h"
#include "TitleBarButton.h"
#include "ViewController.h"
#include "WindowAccessible.h"
#include <base/LocalizedString.h>
#include <ui/system/WindowSystem.h>

#include <QAction>
#include <QCloseEvent>
#include <QMenu>
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
    : QWidget(parent, Qt::Window),
      m_frame(new DrawnFrame(*this)),
      m_titleBar(m_frame->titleBar()),
      m_closeAction(new QAction(String::localize(u"Close"_s), this)),
      m_normalMargin(m_frame->margin())
{
    installWindowAccessible();
    allWindows() += this;
    connect(m_frame, &DrawnFrame::lookChanged, this, &Window::applySizeLimits);
    connect(m_frame, &DrawnFrame::situationChanged, this, &Window::refreshFrame);
    connect(&m_titleBar, &TitleBar::zoomRequested, this, &Window::toggleZoom);
    connect(&m_titleBar, &TitleBar::menuRequested, this, &Window::showMenu);
    m_closeAction->setShortcut(Qt::CTRL | Qt::Key_W);
    connect(m_closeAction, &QAction::triggered, this, &QWidget::close);
    addAction(m_closeAction);
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
    releaseContent();
}

QList<ui::Window *> ui::Window::openWindows()
{
    QList<ui::Window *> open = allWindows();
    open.removeIf([](const ui::Window *window) { return !window->isVisible(); });
    return open;
}

void ui::Window::addActionToEveryWindow(QAction &action)
{
    commonActions().removeAll(nullptr); // removes the destroyed ones
    commonActions() += &action;
    for (ui::Window *window : allWindows())
        window->addAction(&action);
}

void ui::Window::setContentViewController(const std::shared_ptr<ViewController> &controller)
{
    if (controller == m_controller)
        return;
    releaseContent();
    if (controller)
        adoptContent(controller);
}

void ui::Window::adoptContent(const std::shared_ptr<ViewController> &controller)
{
    m_controller = controller;
    m_contentView = controller->view();
    m_contentView->setParent(this);
    if (!controller->title().isEmpty())
        setWindowTitle(controller->title());
    connect(controller.get(), &ViewController::titleChanged, this, &QWidget::setWindowTitle);
    m_contentView->lower();
    applySizeLimits();
    layOut();
    if (isVisible())
        controller->notifyWillAppear();
    m_contentView->show();
    orderFocus();
    if (isVisible())
        controller->notifyDidAppear();
}

void ui::Window::releaseContent()
{
    if (!m_controller)
        return;
    disconnect(m_controller.get(), nullptr, this, nullptr);
    if (m_contentView)
        m_contentView->setParent(nullptr);
    m_contentView.clear();
    m_controller.reset();
}

void ui::Window::setTitlebarAppearsTransparent(bool transparent)
{
    m_titleBar.setTransparent(transparent);
}

bool ui::Window::titlebarAppearsTransparent() const
{
    return m_titleBar.isTransparent();
}

void ui::Window::setTitleVisibility(TitleVisibility visibility)
{
    m_titleBar.setTitleVisibility(visibility);
}

ui::Window::TitleVisibility ui::Window::titleVisibility() const
{
    return m_titleBar.titleVisibility();
}

void ui::Window::setStandardButtonHidden(StandardButton button, bool hidden)
{
    m_titleBar.setButtonHidden(button, hidden);
}

bool ui::Window::isStandardButtonHidden(StandardButton button) const
{
    return m_titleBar.button(button)->isHidden();
}

void ui::Window::addTitlebarAccessoryViewController(
    const std::shared_ptr<TitlebarAccessoryViewController> &accessory)
{
    m_titleBar.addAccessory(accessory);
    orderFocus();
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

void ui::Window::setVisible(bool visible)
{
    // Show events also come when a window is un-minimised.
    const bool appears = visible && !isVisible();
    const std::shared_ptr<ViewController> controller = m_controller;
    if (appears) {
        create();
        orderFocus();
        refreshFrame();
        if (controller)
            controller->notifyWillAppear();
    }
    QWidget::setVisible(visible);
    if (appears && controller)
        controller->notifyDidAppear();
    // Last, because a receiver may destroy the window.
    if (!visible && std::exchange(m_closing, false))
        Q_EMIT closed();
}

void ui::Window::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    m_closing = event->isAccepted() && isVisible();
}

void ui::Window::orderFocus()
{
    QWidget *previous = nullptr;
    for (QWidget *widget = nextInFocusChain(); widget != this; widget = widget->nextInFocusChain()) {
        // The focus chain also contains menus and pop-ups, which are separate windows.
        const bool isContent = widget->window() == this && !m_titleBar.isAncestorOf(widget);
        if (isContent && widget->focusPolicy() != Qt::NoFocus)
            previous = widget;
    }
    for (QWidget *widget : m_titleBar.focusOrder()) {
        if (previous)
            setTabOrder(previous, widget);
        previous = widget;
    }
}

bool ui::Window::isZoomable() const
{
    return m_resizable && !isStandardButtonHidden(StandardButton::Zoom);
}

void ui::Window::toggleZoom()
{
    if (!isZoomable())
        return;
    if (isMaximized())
        showNormal();
    else
        showMaximized();
}

void ui::Window::showMenu(const QPoint &globalPosition)
{
    if (windowHandle() && WindowSystem::shared().showWindowMenu(windowHandle(), globalPosition))
        return;
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const bool maximized = isMaximized();
    menu->addAction(String::localize(u"Restore"_s), this, &QWidget::showNormal)->setEnabled(maximized);
    menu->addAction(String::localize(u"Move"_s), &m_titleBar, &TitleBar::startMove)->setEnabled(!maximized);
    menu->addAction(String::localize(u"Minimize"_s), this, &QWidget::showMinimized)
        ->setEnabled(!isStandardButtonHidden(StandardButton::Miniaturize));
    menu->addAction(String::localize(u"Maximize"_s), this, &QWidget::showMaximized)
        ->setEnabled(isZoomable() && !maximized);
    menu->addSeparator();
    menu->addAction(m_closeAction);
    menu->popup(globalPosition);
}
