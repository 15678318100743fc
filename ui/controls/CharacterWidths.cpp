#include "CharacterWidths.h"

#include <QFontMetricsF>
#include <QString>

namespace
{
// Allows for kerning, which changes the width of a text a little.
constexpr float Kerning = 1.1F;

/// Whether the glyph of the character does not depend on its neighbours.
bool standsAlone(char16_t code)
{
    constexpr char16_t SoftHyphen = 0xad;
    return (code >= 0x20 && code <= 0x7e) || (code >= 0xa0 && code <= 0xff && code != SoftHyphen);
}
} // namespace

bool CharacterWidths::surelyFits(const QString &text, const QFont &font, int width)
{
    if (!m_hasFont || m_font != font)
        begin(font);
    if (font.letterSpacing() != 0 || font.wordSpacing() != 0)
        return false;
    const float room = float(width) / Kerning;
    float sum = 0;
    for (const QChar character : text) {
        if (!standsAlone(character.unicode()))
            return false;
        sum += widthOf(character);
        if (sum > room)
            return false;
    }
    return true;
}

float CharacterWidths::widthOf(QChar character)
{
    float &width = m_widths[character.unicode()];
    if (width == Unknown)
        width = float(QFontMetricsF(m_font).horizontalAdvance(character));
    return width;
}

void CharacterWidths::begin(const QFont &font)
{
    m_font = font;
    m_hasFont = true;
    m_widths.fill(Unknown);
}
