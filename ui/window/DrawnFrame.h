#pragma once
#include <QObject>
#include <QRect>
#include <ui/system/WindowFrame.h>

class QWidget;
class TitleBar;

/// The frame that a window draws itself: title bar, shadow, rounded corners or a fine line, and the edges by
/// which it is resized. The window system moves and resizes it. A child of the window. Main thread only.
class DrawnFrame final : public QObject
{
    Q_OBJECT

public:
    explicit DrawnFrame(QWidget &window);

    TitleBar &titleBar() const { return *m_titleBar; }
    /// The window's situation at the last `refresh`.
    const WindowFrame::Situation &situation() const { return m_situation; }
    int margin() const { return m_look.margin; }
    /// The frame in the window's coordinates, without the margin.
    QRect rect() const;
    bool hasFixedSize() const;
    /// Reads the window's situation again, applies the matching look and puts the frame above the window's
    /// other children.
    void refresh();

    /// Whether the widget only draws or resizes a frame and means nothing to assistive tools.
    static bool isDecoration(const QWidget *widget);

Q_SIGNALS:
    /// The window's situation may have changed: `refresh` is due.
    void situationChanged();
    /// `refresh` has changed the look, and with it the margin.
    void lookChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    class EdgeGrip;
    class Overlay;

    void applyLook();
    void layOut();
    void paint() const;
    void publish() const;

    QWidget &m_window;
    TitleBar *m_titleBar;
    EdgeGrip *m_grip;
    Overlay *m_overlay;
    WindowFrame::Situation m_situation;
    WindowFrame::Look m_look;
};
