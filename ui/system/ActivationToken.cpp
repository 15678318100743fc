#include "ActivationToken.h"

#include "WindowSystem.h"

#include <QGuiApplication>
#include <QWidget>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto WaylandVariable = "XDG_ACTIVATION_TOKEN";

QString &tokenInHand()
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

QString activationTokenOfStart()
{
    const QString token = qEnvironmentVariable(WaylandVariable);
    return token.isEmpty() ? qEnvironmentVariable("DESKTOP_STARTUP_ID") : token;
}

void setActivationToken(const QString &token)
{
    tokenInHand() = token;
}

QString takeActivationToken()
{
    return std::exchange(tokenInHand(), QString());
}

void activateWithToken(QWidget &window)
{
    const QString token = takeActivationToken();
    if (token.isEmpty())
        return window.activateWindow();
    // On Wayland the toolkit reads the token from this variable and removes the variable.
    if (QGuiApplication::platformName().startsWith(u"wayland"_s))
        qputenv(WaylandVariable, token.toUtf8());
    window.activateWindow();
    if (const quint32 time = serverTime(token); time != 0 && window.windowHandle())
        WindowSystem::shared().activate(window.windowHandle(), time);
    // The toolkit does this only for the first window of a process.
    WindowSystem::shared().endStartup(token);
}
