#include "ChromeColors.h"

namespace
{
constexpr qreal HeaderTint = 0.025;
constexpr qreal PanelTint = 0.035;
constexpr qreal SeparatorTint = 0.065;
constexpr qreal BorderTint = 0.13;
constexpr qreal SecondaryTextTint = 0.64;
constexpr qreal DarkFieldTint = 0.05;
constexpr qreal SelectedRowTint = 0.135;
constexpr qreal DarkSelectedRowTint = 0.18;
constexpr qreal PillTint = 0.06;
constexpr qreal HoveredPillTint = 0.10;
constexpr qreal PressedPillTint = 0.16;
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
    colors.secondaryText = mixed(colors.window, colors.text, SecondaryTextTint);
    colors.header = mixed(colors.window, colors.text, HeaderTint);
    colors.panel = mixed(colors.window, colors.text, PanelTint);
    colors.separator = mixed(colors.window, colors.text, SeparatorTint);
    colors.border = mixed(colors.window, colors.text, BorderTint);
    const QColor base = palette.color(QPalette::Base);
    colors.field = colors.dark ? mixed(base, palette.color(QPalette::Text), DarkFieldTint) : base;
    colors.accent = palette.color(QPalette::Active, QPalette::Highlight);
    colors.accentText = palette.color(QPalette::Active, QPalette::HighlightedText);
    colors.selectedRow =
        mixed(colors.window, colors.accent, colors.dark ? DarkSelectedRowTint : SelectedRowTint);
    const qreal bonus = colors.dark ? DarkPillBonus : 0;
    colors.pill = withAlpha(colors.text, PillTint + bonus);
    colors.hoveredPill = withAlpha(colors.text, HoveredPillTint + bonus);
    colors.pressedPill = withAlpha(colors.text, PressedPillTint + bonus);
    return colors;
}
