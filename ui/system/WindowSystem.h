#pragma once
#include "WindowFrame.h"

#include <QObject>
#include <memory>
#include <optional>

class QWidget;
class QWindow;
class X11Hints;

/// Window system services for windows that draw their own frame. Main thread only; created on first use,
/// after the application object.
class WindowSystem final : public QObject
{
    Q_OBJECT

public:
    static WindowSystem &shared();
    ~WindowSystem() override;

    /// Whether a compositor shows what is behind transparent parts of a window.
    bool isComposited() const;
    /// Whether the window system can be given a margin around the frame.
    bool placesByFrame() const;
    /// Whether the window stands at an edge of its screen or fills one direction of it.
    bool isTiled(QWindow *window) const;
    /// The situation that decides what the frame of a top-level widget looks like.
    WindowFrame::Situation situationOf(const QWidget &window) const;
    /// Publishes the frame, the opaque area and the input area of a window. Call again after every change of
    /// size or look; does nothing before the native window exists.
    void publishFrame(const QWidget &window, const WindowFrame::Look &look);
    /// Shows the window system's own menu for the window; returns false when there is none.
    bool showWindowMenu(QWindow *window, const QPoint &globalPosition);
    /// Ends the startup notification that a launcher shows.
    void endStartup(const QString &startupId);
    /// Requests the focus for a user action at that X server time.
    void activate(QWindow *window, quint32 time);

    /// For tests: fixes the results of `isComposited` and `placesByFrame`; changes of the system are no
    /// longer followed.
    void setComposited(std::optional<bool> composited);

Q_SIGNALS:
    void compositedChanged();
    /// A window was tiled or untiled, or its state changed otherwise.
    void windowStateChanged();

private:
    WindowSystem();

    std::unique_ptr<X11Hints> m_x11; // null on other systems
    std::optional<bool> m_compositedForTests;
};
