#pragma once
#include <QColor>
#include <QPalette>

/// The colours of the program's own surfaces, mixed from a palette, so that they follow dark mode, the accent
/// colour and the desktop's palette.
struct ChromeColors
{
    static ChromeColors of(const QPalette &palette);
    /// The program's palette for a light or dark desktop and an accent colour.
    static QPalette paletteFor(bool dark, const QColor &accent);
    /// `amount` (0 to 1) of `over` on `base`, opaque.
    static QColor mixed(const QColor &base, const QColor &over, qreal amount);
    /// White or near-black, whichever reads better on `background`.
    static QColor readableOn(const QColor &background);
    static bool isDark(const QPalette &palette);

    bool dark = false;
    QColor window;
    QColor text;
    QColor secondaryText;
    QColor header;      // behind the title bar and the search field
    QColor panel;       // the detail panel and boxes that stand out a little
    QColor separator;   // lines between parts
    QColor border;      // frames of fields
    QColor field;       // inside fields
    QColor selectedRow; // behind the selected row of a list
    QColor accent;
    QColor accentText; // on the accent colour

    /// Translucent greys that fill buttons on any surface: at rest, under the pointer, pressed.
    QColor pill;
    QColor hoveredPill;
    QColor pressedPill;
};
