#pragma once
#include <QPixmap>
#include <QPointer>
#include <QWidget>

class QVariantAnimation;

/// What a place of a window looked like, fading away over what is there now. It takes no input, no focus and
/// no part in any layout, and goes by itself, or with the view it was taken for. Main thread only.
class FadingSnapshot final : public QWidget
{
    Q_OBJECT

public:
    /// What an area of a window looks like.
    struct Look
    {
        QRect area; // in the window
        QPixmap pixmap;
    };

    /// The look of wherever `view` may be after it was shown or hidden, before that happens.
    static Look lookAround(const QWidget &view);
    /// Fades that look away where `view` is now, in the place of an earlier fade of the same view.
    static void fade(QWidget &view, const Look &before);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    FadingSnapshot(QWidget &view, const QPixmap &look);
    static FadingSnapshot *running(const QWidget &view);

    QPointer<QWidget> m_view;
    QPixmap m_look;
    QVariantAnimation *m_animation;
};
