#pragma once
#include <ui/system/WindowFrame.h>

#include <QObject>

class EdgeGrip;
class FrameOverlay;
class QDialog;
class TitleBar;

/// Gives a stock dialog the frame of the program's own windows: title bar with a close button, rounded
/// corners, shadow. It moves, and where its size is not fixed resizes, through the window system. A child of
/// the dialog. Main thread only.
class DialogFrame final : public QObject
{
    Q_OBJECT

public:
    /// Before the dialog is shown, and once it has its controls: the close button comes after them in the
    /// order of Tab.
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
