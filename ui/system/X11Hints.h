#pragma once
#include "WindowFrame.h"

#include <QAbstractNativeEventFilter>
#include <QPoint>
#include <functional>
#include <memory>

class QWindow;
struct xcb_client_message_event_t;
struct xcb_connection_t;

/// X11 protocols of window managers and compositors that Qt does not implement. Main thread only.
class X11Hints final : public QAbstractNativeEventFilter
{
public:
    /// Null when the application does not run on X11.
    static std::unique_ptr<X11Hints> ofApplication();
    ~X11Hints() override;

    bool isCompositorRunning() const { return m_compositor; }
    bool isTiled(QWindow *window) const;
    void publishFrame(QWindow *window, const WindowFrame::Published &frame);
    bool showWindowMenu(QWindow *window, const QPoint &globalPosition);
    void activate(QWindow *window, quint32 time);
    /// Broadcasts that a startup notification has ended, so that launchers stop showing it.
    void endStartup(const QByteArray &startupId);

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

    std::function<void()> compositedChanged;
    std::function<void()> windowStateChanged;

private:
    struct Atoms
    {
        quint32 compositorSelection, frameExtents, opaqueRegion, windowState, maximizedHorizontally,
            maximizedVertically, edgeConstraints, supported, showWindowMenu, activeWindow, startupBegin,
            startup;
    };

    explicit X11Hints(xcb_connection_t *connection);
    void watchCompositor();
    bool isSupported(quint32 atom) const;
    void sendToRoot(const xcb_client_message_event_t &message) const;
    void broadcast(const QByteArray &text);

    xcb_connection_t *m_connection;
    quint32 m_root = 0;
    Atoms m_atoms{};
    int m_firstFixesEvent = -1; // without the XFixes extension compositor changes are not followed
    bool m_compositor = false;
};
