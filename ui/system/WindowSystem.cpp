#include "WindowSystem.h"

#include <QGuiApplication>
#include <QWidget>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto WaylandVariable = "XDG_ACTIVATION_TOKEN";

QString &storedToken()
{
    static QString token;
    return token;
}

/// The X server time at the end of a startup id: "…_TIME12345".
quint32 serverTime(const QString &startupId)
{
    const qsizetype mark = startupId.lastIndexOf(u"_TIME"_s);
    return mark < 0 ? 0 : startupId.mid(mark + 5).toUInt();
}
} // namespace

#ifndef PLOVENDIX_X11
std::unique_ptr<WindowSystem> WindowSystem::makeForX11()
{
    return nullptr;
}
#endif

WindowSystem &WindowSystem::shared()
{
    static const std::unique_ptr<WindowSystem> system = [] {
        auto x11 = makeForX11();
        return x11 ? std::move(x11) : std::unique_ptr<WindowSystem>(new WindowSystem);
    }();
    return *system;
}

bool WindowSystem::isComposited() const
{
    return m_compositedForTests.value_or(hasCompositor());
}

bool WindowSystem::hasCompositor() const
{
    const QString platform = QGuiApplication::platformName();
    return platform.startsWith(u"wayland"_s) || platform == u"windows"_s || platform == u"cocoa"_s;
}

WindowFrame::Situation WindowSystem::situationOf(const QWidget &window) const
{
    WindowFrame::Situation now;
    now.composited = isComposited();
    now.placedByFrame = m_compositedForTests || placesByFrame();
    now.maximized = window.isMaximized();
    now.fullScreen = window.isFullScreen();
    now.tiled = window.internalWinId() != 0 && window.isVisible() && isTiled(window.windowHandle());
    return now;
}

void WindowSystem::publishFrame(const QWidget &window, const WindowFrame::Look &look)
{
    if (window.internalWinId() != 0)
        publish(window.windowHandle(), look);
}

QString WindowSystem::activationTokenOfStart()
{
    const QString token = qEnvironmentVariable(WaylandVariable);
    return token.isEmpty() ? qEnvironmentVariable("DESKTOP_STARTUP_ID") : token;
}

void WindowSystem::setActivationToken(const QString &token)
{
    storedToken() = token;
}

QString WindowSystem::takeActivationToken()
{
    return std::exchange(storedToken(), QString());
}

void WindowSystem::activate(QWidget &window)
{
    const QString token = takeActivationToken();
    if (token.isEmpty())
        return window.activateWindow();
    // On Wayland the toolkit reads the token from this variable and removes the variable.
    if (QGuiApplication::platformName().startsWith(u"wayland"_s))
        qputenv(WaylandVariable, token.toUtf8());
    window.activateWindow();
    if (const quint32 time = serverTime(token); time != 0 && window.windowHandle())
        requestFocus(window.windowHandle(), time);
    // The toolkit does this only for the first window of a process.
    endStartup(token.toUtf8());
}

void WindowSystem::setComposited(std::optional<bool> composited)
{
    m_compositedForTests = composited;
    Q_EMIT situationChanged();
}
