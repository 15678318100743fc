#include "TextDecoding.h"

#include "LegacyText.h"

#include <QStringDecoder>

#include <algorithm>
#include <limits>
#include <optional>

namespace
{
// For shorter texts the language is a better guess than the detector's.
constexpr qsizetype DetectorBytes = 256;
// More than subtitles have; of longer texts only a part is examined.
constexpr qsizetype JudgedBytes = 256LL * 1024;
constexpr int UnreadablePenalty = 1000;
constexpr int ControlPenalty = 10;

/// The part of the text that determines the character set: whole lines from the first that is not ASCII,
/// because half a character is invalid.
QByteArray judgedPart(const QByteArray &bytes)
{
    if (bytes.size() <= JudgedBytes)
        return bytes;
    const auto telling =
        std::find_if(bytes.cbegin(), bytes.cend(), [](char c) { return static_cast<quint8>(c) >= 0x80; });
    const qsizetype first = telling == bytes.cend() ? 0 : telling - bytes.cbegin();
    const QByteArray part = bytes.mid(bytes.lastIndexOf('\n', first) + 1, JudgedBytes);
    const qsizetype lineEnd = part.lastIndexOf('\n');
    return lineEnd < 0 ? part : part.left(lineEnd + 1);
}

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

/// Below this share of ASCII characters a text is not UTF-16 or UTF-32; a cue's times alone have more.
constexpr qsizetype FewestPlain = 20; // one in this many

/// The number of ASCII characters in a decoded wide text; 0 when it does not look like text.
qsizetype plainWithinWide(const QString &text)
{
    const qsizetype plain =
        std::count_if(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() < 0x80; });
    const bool looksWide = plain * FewestPlain >= text.size() && !text.contains(QChar(0));
    return looksWide ? plain : 0;
}

/// UTF-16 and UTF-32 without a mark: the zeros of digits, spaces and line ends are on one side, and from the
/// other side these are not ASCII. Some East Asian characters become ASCII when read from the wrong side, so
/// the reading with most ASCII characters is used. A truncated last character is dropped.
std::optional<DecodedText> asWide(const QByteArray &bytes)
{
    struct Width
    {
        QStringConverter::Encoding encoding;
        qsizetype unit;
        const char *name;
    };
    constexpr Width Widths[] = {{QStringConverter::Utf32LE, 4, "utf-32le"},
                                {QStringConverter::Utf32BE, 4, "utf-32be"},
                                {QStringConverter::Utf16LE, 2, "utf-16le"},
                                {QStringConverter::Utf16BE, 2, "utf-16be"}};
    if (!bytes.contains('\0'))
        return std::nullopt;
    std::optional<DecodedText> best;
    qsizetype mostPlain = 0;
    for (const Width &width : Widths) {
        QStringDecoder decode(width.encoding, QStringConverter::Flag::Stateless);
        QString text = decode(QByteArrayView(bytes).first(bytes.size() - bytes.size() % width.unit));
        const qsizetype plain = plainWithinWide(text);
        if (plain <= mostPlain)
            continue;
        mostPlain = plain;
        best = DecodedText{std::move(text), width.name};
    }
    return best;
}

std::optional<DecodedText> asUtf8(const QByteArray &bytes)
{
    QStringDecoder decode(QStringConverter::Utf8);
    QString text = decode(bytes);
    if (decode.hasError())
        return std::nullopt;
    return DecodedText{std::move(text), "utf-8"};
}

/// Sets that switch by escape sequences and would pass for UTF-8.
std::optional<DecodedText> byEscapes(const QByteArray &bytes)
{
    if (!bytes.contains("\x1B$"))
        return std::nullopt;
    const QByteArray detected = detectedCharacterSet(judgedPart(bytes));
    const QByteArray set = detected.startsWith("iso-2022-") ? detected : QByteArray("iso-2022-jp");
    const std::optional<LegacyText> read = LegacyText::read(bytes, set);
    if (!read || read->hasErrors)
        return std::nullopt;
    return DecodedText{read->text, set};
}

/// UTF-8 with a few damaged bytes: so many valid sequences cannot be chance.
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

/// Other Japanese sets decoded as Shift-JIS give half-width kana.
bool isHalfWidthKana(QChar c)
{
    return c.unicode() >= 0xFF61 && c.unicode() <= 0xFF9F;
}

bool isSignWithinAWord(QStringView text, qsizetype at)
{
    const QChar c = text[at];
    return !c.isLetter() && !c.isMark() && !c.isSurrogate() && at + 1 < text.size() && text[at + 1].isLower();
}

/// One Cyrillic set decoded as another swaps small letters and capitals.
bool isCapitalWithinAWord(QStringView text, qsizetype at)
{
    return at > 0 && text[at].isUpper() && text[at - 1].isLower() && text[at - 1].unicode() >= 0x80;
}

/// An accented Latin letter beside one of another script.
bool isForeignWithinAWord(QStringView text, qsizetype at)
{
    const auto isForeign = [&](qsizetype one, qsizetype other) {
        return text[one].unicode() >= 0x80 && text[one].isLetter() && text[other].isLetter() &&
               text[one].script() == QChar::Script_Latin && text[other].script() != QChar::Script_Latin;
    };
    return at > 0 && (isForeign(at, at - 1) || isForeign(at - 1, at));
}

/// The generic currency sign, whose place the euro took in later sets.
bool isCurrencySign(QChar c)
{
    return c.unicode() == 0xA4;
}

/// How wrong a decoded text looks. Decoders of single-byte sets report no errors: invalid bytes become C1
/// controls, and letters decoded as signs stand right before small letters.
int mojibakeScore(const QString &text)
{
    int score = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.unicode() < 0x80)
            continue;
        if (c == QChar::ReplacementCharacter)
            score += UnreadablePenalty;
        else if (c.unicode() < 0xA0 || c.category() == QChar::Other_PrivateUse)
            score += ControlPenalty;
        else if (isHalfWidthKana(c) || isSignWithinAWord(text, i) || isCapitalWithinAWord(text, i) ||
                 isForeignWithinAWord(text, i) || isCurrencySign(c))
            ++score;
    }
    return score;
}

QByteArrayList candidates(const QByteArray &bytes, const QString &language)
{
    QByteArrayList sets = legacyCharacterSets(language);
    const QByteArray detected = detectedCharacterSet(bytes);
    if (!detected.isEmpty())
        sets.insert(bytes.size() < DetectorBytes ? sets.size() : 0, detected);
    return sets << "windows-1252";
}

QByteArray likeliestSet(const QByteArray &bytes, const QString &language)
{
    QByteArray best = "iso-8859-1";
    int bestScore = std::numeric_limits<int>::max();
    for (const QByteArray &set : candidates(bytes, language)) {
        const std::optional<LegacyText> read = LegacyText::read(bytes, set);
        if (!read)
            continue;
        const int score = read->hasErrors ? std::max(mojibakeScore(read->text), UnreadablePenalty)
                                          : mojibakeScore(read->text);
        if (score < bestScore) {
            best = set;
            bestScore = score;
        }
    }
    return best;
}
} // namespace

DecodedText decodedText(const QByteArray &bytes, const QString &language)
{
    if (const auto marked = byMark(bytes))
        return *marked;
    if (const auto wide = asWide(bytes))
        return *wide;
    if (const auto escaped = byEscapes(bytes))
        return *escaped;
    if (const auto utf8 = asUtf8(bytes))
        return *utf8;
    if (const auto damaged = asDamagedUtf8(bytes))
        return *damaged;
    const QByteArray set = likeliestSet(judgedPart(bytes), language);
    const std::optional<LegacyText> read = LegacyText::read(bytes, set);
    // One of the Vietnamese sets writes letter and tone apart.
    return {read ? read->text.normalized(QString::NormalizationForm_C) : QString::fromLatin1(bytes), set};
}
