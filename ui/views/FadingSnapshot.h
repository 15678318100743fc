#pragma once
#include <QPixmap>
#include <QPointer>
#include <QWidget>

class QVariantAnimation;

/// A snapshot of a part of a window that fades out over the present content. It takes no input, no focus and
/// no part in any layout, and deletes itself after the fade or with its view. Main thread only.
class FadingSnapshot final : public QWidget
{
    Q_OBJECT

public:
    /// A picture of an area of a window.
    struct Look
    {
        QRect area; // in the window
        QPixmap pixmap;
    };

    /// The look of the area that `view` may occupy after it is shown or hidden. Call before that.
    static Look lookAround(const QWidget &view);
    /// Fades out `before` over the present place of `view` and replaces an earlier fade of that view.
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
