#pragma once
#include "WindowFrame.h"

#include <QObject>
#include <memory>
#include <optional>

class QWidget;
class QWindow;

/// Window system services for windows that draw their own frame. This class does without; the derived class
/// for X11 does what the toolkit leaves out. Main thread only; created on first use, after the application
/// object.
class WindowSystem : public QObject
{
    Q_OBJECT

public:
    static WindowSystem &shared();
    ~WindowSystem() override = default;

    /// Whether a compositor shows what is behind transparent parts of a window.
    bool isComposited() const;
    /// The situation that decides what the frame of a top-level widget looks like.
    WindowFrame::Situation situationOf(const QWidget &window) const;
    /// Publishes the frame, the opaque area and the input area of a window. Call again after every change of
    /// size or look; does nothing before the native window exists.
    void publishFrame(const QWidget &window, const WindowFrame::Look &look);
    /// Shows the window system's own menu for the window; returns false when there is none.
    virtual bool showWindowMenu(QWindow *, const QPoint & /*globalPosition*/) { return false; }

    /// Stores an activation token (Wayland) or startup id (X11), by which another program passes on the right
    /// to come to the front. It is good for one window.
    static void setActivationToken(const QString &token);
    /// Returns the token and clears it; empty when there is none.
    static QString takeActivationToken();
    /// The token that this process was started with. Call before the application object is created, which
    /// consumes it.
    static QString activationTokenOfStart();
    /// Activates the window, with the token if there is one, and ends the startup notification of that token.
    void activate(QWidget &window);

    /// For tests: fixes the result of `isComposited`, and windows have a margin as on X11; changes of the
    /// system are no longer followed.
    void setComposited(std::optional<bool> composited);

Q_SIGNALS:
    /// A compositor came or went, or a window was tiled, untiled or changed its state otherwise.
    void situationChanged();

protected:
    WindowSystem() = default;
    virtual bool hasCompositor() const;
    /// Whether the window system can be given a margin around the frame.
    virtual bool placesByFrame() const { return false; }
    /// Whether the window stands at an edge of its screen or fills one direction of it.
    virtual bool isTiled(QWindow *) const { return false; }
    virtual void publish(QWindow *, const WindowFrame::Look &) {}
    /// Requests the focus for a user action at that X server time.
    virtual void requestFocus(QWindow *, quint32 /*time*/) {}
    /// Ends the startup notification that a launcher shows.
    virtual void endStartup(const QByteArray & /*startupId*/) {}

private:
    /// Null when the application does not run on X11.
    static std::unique_ptr<WindowSystem> makeForX11();

    std::optional<bool> m_compositedForTests;
};
