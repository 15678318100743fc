#pragma once
#include <QPixmap>
#include <QRect>

class QPainter;

/// The soft shadow and the fine outline around a rounded frame. Rendered once per look and stretched, so that
/// painting costs a few blits. Main thread only.
class Shadow final
{
public:
    struct Look
    {
        qreal pixelRatio = 1;
        bool active = true;
        bool dark = false;

        bool operator==(const Look &) const = default;
    };

    /// Draws the shadow of a frame that lies `WindowFrame::ShadowMargin` inside `outer`. Within the frame
    /// only the open areas of rounded corners are drawn.
    static void paint(QPainter &painter, const QRect &outer, const Look &look);

private:
    static const QPixmap &patch(const Look &look);
};
