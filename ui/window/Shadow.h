#pragma once
#include <QPixmap>
#include <QRect>

class QPainter;

/// The soft shadow and the fine outline around a rounded frame. Rendered once for a look and stretched, so
/// that painting costs a few blits. Main thread only.
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

    /// Draws the shadow of a frame that lies `WindowFrame::ShadowMargin` inside `outer`. What is under the
    /// frame itself is drawn too where a rounded corner leaves it open, else not.
    static void paint(QPainter &painter, const QRect &outer, const Look &look);

private:
    static const QPixmap &patch(const Look &look);
};
