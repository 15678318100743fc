#pragma once
#include <QWidget>

/// A part of a window on a ground of its own, with a line towards the part that it adjoins.
class SurfaceView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(Surface surface READ surface WRITE setSurface)

public:
    /// A header lies above the rest and is lined at its bottom, a panel lies below and is lined at its top.
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
