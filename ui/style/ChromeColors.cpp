#include "ChromeColors.h"

namespace
{
constexpr qreal DarkPillBonus = 0.02;

QColor withAlpha(QColor color, qreal alpha)
{
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}
} // namespace

QColor ChromeColors::mixed(const QColor &base, const QColor &over, qreal amount)
{
    const auto weight = static_cast<float>(amount);
    const auto part = [weight](float from, float to) { return from + (to - from) * weight; };
    const QColor mix = QColor::fromRgbF(part(base.redF(), over.redF()), part(base.greenF(), over.greenF()),
                                        part(base.blueF(), over.blueF()));
    return QColor(mix.rgb()); // as it is on the screen, so that equal colours compare equal
}

QColor ChromeColors::readableOn(const QColor &background)
{
    constexpr int brightBackground = 165;
    return qGray(background.rgb()) > brightBackground ? QColor(0x1d, 0x1f, 0x22) : QColor(Qt::white);
}

bool ChromeColors::isDark(const QPalette &palette)
{
    return palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
}

ChromeColors ChromeColors::of(const QPalette &palette)
{
    ChromeColors colors;
    colors.dark = isDark(palette);
    colors.window = palette.color(QPalette::Window);
    colors.text = palette.color(QPalette::WindowText);
    const auto tint = [&colors](qreal amount) { return mixed(colors.window, colors.text, amount); };
    colors.secondaryText = tint(0.64);
    colors.header = tint(0.025);
    colors.panel = tint(0.035);
    colors.separator = tint(0.065);
    colors.border = tint(0.13);
    const QColor base = palette.color(QPalette::Base);
    colors.field = colors.dark ? mixed(base, palette.color(QPalette::Text), 0.05) : base;
    colors.accent = palette.color(QPalette::Active, QPalette::Highlight);
    colors.accentText = palette.color(QPalette::Active, QPalette::HighlightedText);
    colors.selectedRow = mixed(colors.window, colors.accent, colors.dark ? 0.18 : 0.135);
    const qreal bonus = colors.dark ? DarkPillBonus : 0;
    colors.pill = withAlpha(colors.text, 0.06 + bonus);
    colors.hoveredPill = withAlpha(colors.text, 0.10 + bonus);
    colors.pressedPill = withAlpha(colors.text, 0.16 + bonus);
    return colors;
}

QPalette ChromeColors::paletteFor(bool dark, const QColor &accent)
{
    const QColor window = dark ? QColor(0x20, 0x22, 0x26) : QColor(Qt::white);
    const QColor text = dark ? QColor(0xec, 0xee, 0xf0) : QColor(0x1d, 0x1f, 0x22);
    const QColor secondaryText = dark ? QColor(0x9a, 0xa0, 0xa8) : QColor(0x6b, 0x70, 0x78);
    const QColor link = dark ? mixed(accent, Qt::white, 0.25) : mixed(accent, Qt::black, 0.1);
    const auto tint = [&](qreal amount) { return mixed(window, text, amount); };
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, window);
    palette.setColor(QPalette::AlternateBase, tint(0.025));
    palette.setColor(QPalette::Button, dark ? QColor(0x31, 0x33, 0x37) : QColor(0xf2, 0xf2, 0xf2));
    palette.setColor(QPalette::ToolTipBase, dark ? QColor(0x34, 0x35, 0x3b) : QColor(0xf9, 0xfa, 0xfb));
    palette.setColor(QPalette::Light, tint(0.03));
    palette.setColor(QPalette::Midlight, tint(0.065));
    palette.setColor(QPalette::Mid, tint(0.13));
    palette.setColor(QPalette::Dark, tint(0.3));
    palette.setColor(QPalette::Shadow, tint(0.6));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText,
                            QPalette::BrightText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, tint(0.4));
    }
    palette.setColor(QPalette::PlaceholderText, secondaryText);
    palette.setColor(QPalette::Link, link);
    palette.setColor(QPalette::LinkVisited, mixed(link, secondaryText, 0.5));
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, readableOn(accent));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, mixed(window, accent, 0.4));
    return palette;
}
