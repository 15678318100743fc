#pragma once
#include <QWidget>

/// A part of a window with its own background and a line towards the adjoining part.
class SurfaceView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(Surface surface READ surface WRITE setSurface)

public:
    /// A header has its line at the bottom, a panel at the top.
    enum class Surface
    {
        Header,
        Panel
    };
    Q_ENUM(Surface)

    explicit SurfaceView(QWidget *parent = nullptr);

    Surface surface() const { return m_surface; }
    void setSurface(Surface surface);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Surface m_surface = Surface::Panel;
};
