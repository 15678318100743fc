#pragma once
#include "WindowFrame.h"

#include <QObject>
#include <memory>
#include <optional>

class QWidget;
class QWindow;
class X11Hints;

/// What the window system does for windows that draw their own frame. Main thread only; made on first use,
/// once the application object exists.
class WindowSystem final : public QObject
{
    Q_OBJECT

public:
    static WindowSystem &shared();
    ~WindowSystem() override;

    /// Whether what a window leaves transparent shows what is behind it, right now.
    bool isComposited() const;
    /// Whether it can be told of a margin around the frame.
    bool placesByFrame() const;
    /// Whether the window stands at an edge of its screen or fills one direction of it.
    bool isTiled(QWindow *window) const;
    /// The situation that decides what the frame of a top-level widget looks like.
    WindowFrame::Situation situationOf(const QWidget &window) const;
    /// Tells the system where in the window the frame is, what it hides, and where it takes the mouse. Call
    /// again after every change of size or look; nothing before the native window is made.
    void publishFrame(const QWidget &window, const WindowFrame::Look &look);
    /// Shows its own menu for the window; false when it has none.
    bool showWindowMenu(QWindow *window, const QPoint &globalPosition);
    /// Ends the sign of a start under way that a launcher shows for what it asked for.
    void endStartup(const QString &startupId);
    /// Asks for the focus on behalf of something that the person did at that time of the X server.
    void activate(QWindow *window, quint32 time);

    /// For tests: what `isComposited` and `placesByFrame` say, whatever runs; nothing follows the system
    /// again.
    void setComposited(std::optional<bool> composited);

Q_SIGNALS:
    void compositedChanged();
    /// The system tiled or untiled some window, or changed its state in another way.
    void windowStateChanged();

private:
    WindowSystem();

    std::unique_ptr<X11Hints> m_x11; // nothing on other systems
    std::optional<bool> m_compositedForTests;
};
