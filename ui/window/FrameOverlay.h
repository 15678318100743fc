#pragma once
#include <QWidget>
#include <ui/system/WindowFrame.h>

/// Lies over a window's content and draws the rounded corners, cut out of the content with the shadow behind
/// them, or the fine line around a frame without shadow. Takes no mouse events and covers only those pixels,
/// so that the content scrolls fast.
class FrameOverlay final : public QWidget
{
    Q_OBJECT

public:
    explicit FrameOverlay(QWidget *window);

    void setLook(const WindowFrame::Look &look);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QRect frame() const;
    void updateMask();

    WindowFrame::Look m_look;
};
