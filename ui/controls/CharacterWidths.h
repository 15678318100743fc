#pragma once
#include <QFont>
#include <array>

class QString;

/// The widths of a font's characters, to tell quickly whether a text fits without shaping it. Main thread
/// only.
class CharacterWidths final
{
public:
    /// Whether the text is certainly no wider than `width` points. False means unknown: the text has
    /// non-Latin characters or is close to the width.
    bool surelyFits(const QString &text, const QFont &font, int width);

private:
    static constexpr char16_t End = 0x100;
    static constexpr float Unknown = -1;

    float widthOf(QChar character);
    void begin(const QFont &font);

    QFont m_font;
    bool m_hasFont = false;
    std::array<float, End> m_widths{};
};
