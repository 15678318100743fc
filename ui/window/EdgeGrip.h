#pragma once
#include <QWidget>

/// The ring around a window's frame by which it is resized through the window system. It lies over the
/// content; a mask leaves all but the ring free.
class EdgeGrip final : public QWidget
{
    Q_OBJECT

public:
    explicit EdgeGrip(QWidget *window);

    /// The shadow margin around the frame, in points.
    void setMargin(int margin);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    int m_margin = 0;
};
