#pragma once
#include <ui/system/WindowFrame.h>

#include <QObject>

class EdgeGrip;
class FrameOverlay;
class QDialog;
class TitleBar;

/// Gives a stock dialog the frame of the program's own windows: title bar with a close button, rounded
/// corners, shadow. The window system moves it and, if its size is not fixed, resizes it. A child of the
/// dialog. Main thread only.
class DialogFrame final : public QObject
{
    Q_OBJECT

public:
    /// Call before the dialog is shown and after its controls exist, because the close button comes last in
    /// the Tab order.
    static void putAround(QDialog &dialog);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit DialogFrame(QDialog &dialog);

    void refresh();
    void correctPosition();
    void setLook(const WindowFrame::Look &look);
    void layOut();
    void paint() const;
    bool hasFixedSize() const;

    QDialog &m_dialog;
    TitleBar *m_titleBar;
    EdgeGrip *m_grip;
    FrameOverlay *m_overlay;
    WindowFrame::Look m_look;
};
