#include "RtfTokens.h"

#include <algorithm>
#include <limits>

namespace
{
constexpr qsizetype LongestWord = 32;

bool isLetter(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

std::optional<int> hexDigit(char byte)
{
    if (isDigit(byte))
        return byte - '0';
    if (byte >= 'a' && byte <= 'f')
        return byte - 'a' + 10;
    if (byte >= 'A' && byte <= 'F')
        return byte - 'A' + 10;
    return std::nullopt;
}
} // namespace

RtfToken RtfTokens::next()
{
    // Line breaks of the file are none of the text.
    while (!atEnd() && (m_bytes[m_place] == '\r' || m_bytes[m_place] == '\n'))
        ++m_place;
    if (atEnd())
        return {RtfToken::Kind::End};
    const char byte = m_bytes[m_place++];
    switch (byte) {
    case '{':
        return {RtfToken::Kind::GroupStart};
    case '}':
        return {RtfToken::Kind::GroupEnd};
    case '\\':
        return control();
    default:
        return {.kind = RtfToken::Kind::Text, .byte = byte};
    }
}

RtfToken RtfTokens::control()
{
    if (atEnd())
        return {RtfToken::Kind::Damaged};
    const char byte = m_bytes[m_place];
    if (isLetter(byte))
        return controlWord();
    ++m_place;
    if (byte == '\'')
        return hexByte();
    // An escaped line break may be two bytes.
    if (byte == '\r' && !atEnd() && m_bytes[m_place] == '\n')
        ++m_place;
    return {.kind = RtfToken::Kind::Symbol, .byte = byte};
}

RtfToken RtfTokens::controlWord()
{
    const qsizetype start = m_place;
    while (!atEnd() && isLetter(m_bytes[m_place]))
        ++m_place;
    if (m_place - start > LongestWord)
        return {RtfToken::Kind::Damaged};
    const QByteArray word = m_bytes.sliced(start, m_place - start).toByteArray();
    const auto parameter = number();
    if (!atEnd() && m_bytes[m_place] == ' ')
        ++m_place;
    if (word == "bin")
        return binary(parameter);
    return {.kind = RtfToken::Kind::Word, .word = word, .parameter = parameter};
}

/// A number as far as it fits an int; beyond that the nearest one that does.
std::optional<int> RtfTokens::number()
{
    const bool negative =
        m_place + 1 < m_bytes.size() && m_bytes[m_place] == '-' && isDigit(m_bytes[m_place + 1]);
    if (negative)
        ++m_place;
    if (atEnd() || !isDigit(m_bytes[m_place]))
        return std::nullopt;
    constexpr qint64 Largest = std::numeric_limits<int>::max();
    qint64 value = 0;
    for (; !atEnd() && isDigit(m_bytes[m_place]); ++m_place)
        value = std::min(Largest, value * 10 + (m_bytes[m_place] - '0'));
    return static_cast<int>(negative ? -value : value);
}

RtfToken RtfTokens::hexByte()
{
    if (m_bytes.size() - m_place < 2)
        return {RtfToken::Kind::Damaged};
    const auto high = hexDigit(m_bytes[m_place]);
    const auto low = hexDigit(m_bytes[m_place + 1]);
    if (!high || !low)
        return {RtfToken::Kind::Damaged};
    m_place += 2;
    return {.kind = RtfToken::Kind::Text, .byte = static_cast<char>(*high * 16 + *low)};
}

RtfToken RtfTokens::binary(const std::optional<int> &length)
{
    const int count = length.value_or(0);
    if (count < 0 || count > m_bytes.size() - m_place)
        return {RtfToken::Kind::Damaged};
    m_place += count;
    return {RtfToken::Kind::Binary};
}
