#include "WindowController.h"

#include "ViewController.h"
#include "Window.h"

#include <base/FatalFault.h>

WindowController::WindowController() = default;
WindowController::~WindowController() = default;

ui::Window *WindowController::window()
{
    if (m_window)
        return m_window.get();
    loadWindow();
    if (!m_window)
        fatalFault(QStringLiteral("A window controller of the class %1 loaded no window")
                       .arg(QString::fromUtf8(metaObject()->className())));
    if (const auto content = std::exchange(m_content, nullptr))
        m_window->setContentViewController(content);
    windowDidLoad();
    return m_window.get();
}

void WindowController::showWindow(QObject *)
{
    window()->makeKeyAndOrderFront();
}

std::shared_ptr<ViewController> WindowController::contentViewController() const
{
    return m_window ? m_window->contentViewController() : m_content;
}

void WindowController::setContentViewController(const std::shared_ptr<ViewController> &controller)
{
    if (m_window)
        m_window->setContentViewController(controller);
    else
        m_content = controller;
}

void WindowController::loadWindow()
{
    setWindow(std::make_unique<ui::Window>());
}

void WindowController::setWindow(std::unique_ptr<ui::Window> window)
{
    m_window = std::move(window);
}
