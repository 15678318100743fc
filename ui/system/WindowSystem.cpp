#include "WindowSystem.h"
#ifdef PLOVENDIX_X11
#include "X11Hints.h"
#else
class X11Hints
{
};
#endif

#include <QGuiApplication>
#include <QWidget>

using namespace Qt::StringLiterals;

WindowSystem &WindowSystem::shared()
{
    static WindowSystem system;
    return system;
}

WindowSystem::WindowSystem()
{
#ifdef PLOVENDIX_X11
    m_x11 = X11Hints::ofApplication();
    if (!m_x11)
        return;
    m_x11->compositedChanged = [this] { Q_EMIT compositedChanged(); };
    m_x11->windowStateChanged = [this] { Q_EMIT windowStateChanged(); };
#endif
}

WindowSystem::~WindowSystem() = default;

bool WindowSystem::isComposited() const
{
    if (m_compositedForTests)
        return *m_compositedForTests;
#ifdef PLOVENDIX_X11
    if (m_x11)
        return m_x11->isCompositorRunning();
#endif
    const QString platform = QGuiApplication::platformName();
    return platform.startsWith(u"wayland"_s) || platform == u"windows"_s || platform == u"cocoa"_s;
}

bool WindowSystem::placesByFrame() const
{
    return m_compositedForTests.has_value() || m_x11 != nullptr;
}

bool WindowSystem::isTiled([[maybe_unused]] QWindow *window) const
{
#ifdef PLOVENDIX_X11
    if (m_x11)
        return m_x11->isTiled(window);
#endif
    return false;
}

WindowFrame::Situation WindowSystem::situationOf(const QWidget &window) const
{
    WindowFrame::Situation now;
    now.composited = isComposited();
    now.placedByFrame = placesByFrame();
    now.maximized = window.isMaximized();
    now.fullScreen = window.isFullScreen();
    now.tiled = window.internalWinId() != 0 && window.isVisible() && isTiled(window.windowHandle());
    return now;
}

void WindowSystem::publishFrame([[maybe_unused]] const QWidget &window,
                                [[maybe_unused]] const WindowFrame::Look &look)
{
#ifdef PLOVENDIX_X11
    if (m_x11 && window.internalWinId() != 0)
        m_x11->publishFrame(window.windowHandle(), WindowFrame::publishedFor(window.size(), look));
#endif
}

bool WindowSystem::showWindowMenu([[maybe_unused]] QWindow *window,
                                  [[maybe_unused]] const QPoint &globalPosition)
{
#ifdef PLOVENDIX_X11
    if (m_x11)
        return m_x11->showWindowMenu(window, globalPosition);
#endif
    return false;
}

void WindowSystem::activate([[maybe_unused]] QWindow *window, [[maybe_unused]] quint32 time)
{
#ifdef PLOVENDIX_X11
    if (m_x11)
        m_x11->activate(window, time);
#endif
}

void WindowSystem::endStartup([[maybe_unused]] const QString &startupId)
{
#ifdef PLOVENDIX_X11
    if (m_x11)
        m_x11->endStartup(startupId.toUtf8());
#endif
}

void WindowSystem::setComposited(std::optional<bool> composited)
{
    m_compositedForTests = composited;
    Q_EMIT compositedChanged();
}
