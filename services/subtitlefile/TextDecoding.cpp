#include "TextDecoding.h"

#include "CharacterSets.h"

#include <QStringDecoder>

#include <algorithm>
#include <limits>
#include <optional>

namespace
{
// Below that the detector guesses worse than the language does.
constexpr qsizetype DetectorBytes = 256;
constexpr int UnreadablePenalty = 1000;
constexpr int ControlPenalty = 10;

std::optional<DecodedText> byMark(const QByteArray &bytes)
{
    struct Mark
    {
        const char *hex;
        QStringConverter::Encoding encoding;
        const char *name;
    };
    // UTF-32 first: its little-endian mark begins like that of UTF-16.
    constexpr Mark Marks[] = {{"fffe0000", QStringConverter::Utf32LE, "utf-32le"},
                              {"0000feff", QStringConverter::Utf32BE, "utf-32be"},
                              {"efbbbf", QStringConverter::Utf8, "utf-8"},
                              {"fffe", QStringConverter::Utf16LE, "utf-16le"},
                              {"feff", QStringConverter::Utf16BE, "utf-16be"}};
    for (const Mark &mark : Marks) {
        const QByteArray start = QByteArray::fromHex(mark.hex);
        if (!bytes.startsWith(start))
            continue;
        QStringDecoder decode(mark.encoding, QStringConverter::Flag::Stateless);
        return DecodedText{decode(bytes.mid(start.size())), mark.name};
    }
    return std::nullopt;
}

std::optional<DecodedText> asUtf8(const QByteArray &bytes)
{
    QStringDecoder decode(QStringConverter::Utf8);
    QString text = decode(bytes);
    if (decode.hasError())
        return std::nullopt;
    return DecodedText{std::move(text), "utf-8"};
}

/// UTF-8 in which a few bytes went wrong on the way: what is right in it cannot be chance.
std::optional<DecodedText> asDamagedUtf8(const QByteArray &bytes)
{
    constexpr qsizetype FewestCharacters = 20;
    constexpr qsizetype RightToWrong = 20;
    QStringDecoder decode(QStringConverter::Utf8);
    QString text = decode(bytes);
    const qsizetype wrong = text.count(QChar::ReplacementCharacter);
    const qsizetype right = std::count_if(text.cbegin(), text.cend(), [](QChar c) {
        return c.unicode() >= 0x80 && c != QChar::ReplacementCharacter;
    });
    if (right < FewestCharacters || wrong * RightToWrong > right)
        return std::nullopt;
    return DecodedText{std::move(text), "utf-8"};
}

/// What other Japanese sets look like when they are read as Shift-JIS.
bool isHalfWidthKana(QChar c)
{
    return c.unicode() >= 0xFF61 && c.unicode() <= 0xFF9F;
}

bool isSignWithinAWord(QStringView text, qsizetype at)
{
    const QChar c = text[at];
    return !c.isLetter() && !c.isMark() && !c.isSurrogate() && at + 1 < text.size() && text[at + 1].isLower();
}

/// How wrong a text looks. Decoders of one byte a character report no errors: what is no character becomes a
/// C1 control, and a letter read as a sign stands right before small letters.
int oddness(const QString &text)
{
    int odd = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.unicode() < 0x80)
            continue;
        if (c == QChar::ReplacementCharacter)
            odd += UnreadablePenalty;
        else if (c.unicode() < 0xA0 || c.category() == QChar::Other_PrivateUse)
            odd += ControlPenalty;
        else if (isHalfWidthKana(c) || isSignWithinAWord(text, i))
            ++odd;
    }
    return odd;
}

QByteArrayList candidates(const QByteArray &bytes, const QString &language)
{
    QByteArrayList sets = legacyCharacterSets(language);
    const QByteArray detected = detectedCharacterSet(bytes);
    if (!detected.isEmpty())
        sets.insert(bytes.size() < DetectorBytes ? sets.size() : 0, detected);
    return sets << "windows-1252";
}
} // namespace

DecodedText decodedText(const QByteArray &bytes, const QString &language)
{
    if (const auto marked = byMark(bytes))
        return *marked;
    if (const auto utf8 = asUtf8(bytes))
        return *utf8;
    if (const auto damaged = asDamagedUtf8(bytes))
        return *damaged;
    DecodedText best{QString::fromLatin1(bytes), "iso-8859-1"};
    int bestOddness = std::numeric_limits<int>::max();
    for (const QByteArray &set : candidates(bytes, language)) {
        QStringDecoder decode(set.constData());
        if (!decode.isValid())
            continue;
        const QString text = decode(bytes);
        const int odd = decode.hasError() ? std::max(oddness(text), UnreadablePenalty) : oddness(text);
        if (odd < bestOddness) {
            best = {text, set};
            bestOddness = odd;
        }
    }
    return best;
}
