#include "AppearancePalette.h"
#include "ChromeColors.h"

namespace
{
struct Tones
{
    QColor window;
    QColor text;
    QColor secondaryText;
    QColor button;
    QColor tip;
    QColor link;
};

Tones tonesOf(Appearance::Scheme scheme, const QColor &accent)
{
    if (scheme == Appearance::Scheme::Dark)
        return {.window = QColor(0x20, 0x22, 0x26),
                .text = QColor(0xec, 0xee, 0xf0),
                .secondaryText = QColor(0x9a, 0xa0, 0xa8),
                .button = QColor(0x31, 0x33, 0x37),
                .tip = QColor(0x34, 0x35, 0x3b),
                .link = ChromeColors::mixed(accent, Qt::white, 0.25)};
    return {.window = QColor(0xff, 0xff, 0xff),
            .text = QColor(0x1d, 0x1f, 0x22),
            .secondaryText = QColor(0x6b, 0x70, 0x78),
            .button = QColor(0xf2, 0xf2, 0xf2),
            .tip = QColor(0xf9, 0xfa, 0xfb),
            .link = ChromeColors::mixed(accent, Qt::black, 0.1)};
}

void setSurfaces(QPalette &palette, const Tones &tones)
{
    const auto tint = [&tones](qreal amount) {
        return ChromeColors::mixed(tones.window, tones.text, amount);
    };
    palette.setColor(QPalette::Window, tones.window);
    palette.setColor(QPalette::Base, tones.window);
    palette.setColor(QPalette::AlternateBase, tint(0.025));
    palette.setColor(QPalette::Button, tones.button);
    palette.setColor(QPalette::ToolTipBase, tones.tip);
    palette.setColor(QPalette::Light, tint(0.03));
    palette.setColor(QPalette::Midlight, tint(0.065));
    palette.setColor(QPalette::Mid, tint(0.13));
    palette.setColor(QPalette::Dark, tint(0.3));
    palette.setColor(QPalette::Shadow, tint(0.6));
}

void setTexts(QPalette &palette, const Tones &tones)
{
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText,
                            QPalette::BrightText}) {
        palette.setColor(role, tones.text);
        palette.setColor(QPalette::Disabled, role, ChromeColors::mixed(tones.window, tones.text, 0.4));
    }
    palette.setColor(QPalette::PlaceholderText, tones.secondaryText);
    palette.setColor(QPalette::Link, tones.link);
    palette.setColor(QPalette::LinkVisited, ChromeColors::mixed(tones.link, tones.secondaryText, 0.5));
}
} // namespace

QPalette appearancePalette(Appearance::Scheme scheme, const QColor &accent)
{
    const Tones tones = tonesOf(scheme, accent);
    QPalette palette;
    setSurfaces(palette, tones);
    setTexts(palette, tones);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, ChromeColors::readableOn(accent));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, ChromeColors::mixed(tones.window, accent, 0.4));
    return palette;
}
