#include "SearchWords.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MaxCharacters = 1024;
constexpr qsizetype MaxWords = 32;
constexpr qsizetype MaxWordLength = 40;

bool isAscii(char32_t c)
{
    return c < 0x80;
}

/// The plain form of letters that Unicode does not decompose.
QString plainLetter(char32_t c)
{
    static const QHash<char32_t, QString> table = {
        {U'ß', u"ss"_s}, {U'æ', u"ae"_s}, {U'œ', u"oe"_s}, {U'ø', u"o"_s}, {U'ł', u"l"_s},
        {U'đ', u"d"_s},  {U'ð', u"d"_s},  {U'þ', u"th"_s}, {U'ı', u"i"_s}, {U'ħ', u"h"_s},
    };
    return table.value(c, QString::fromUcs4(&c, 1));
}

/// Whether a letter is a word of its script.
bool standsAlone(char32_t c)
{
    switch (QChar::script(c)) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
        return true;
    default:
        return false;
    }
}

/// The marks of decomposed letters are skipped, and apostrophes: "dont" finds "don't".
bool isSilent(char32_t c)
{
    if (isAscii(c))
        return c == U'\'' || c == U'`';
    const QChar::Category category = QChar::category(c);
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_SpacingCombining ||
           category == QChar::Other_Format || c == U'’' || c == U'‘' || c == U'´' || c == U'ʼ';
}
} // namespace

QStringList searchWords(const QString &text)
{
    QStringList words;
    QString word;
    const auto endWord = [&] {
        if (!word.isEmpty() && words.size() < MaxWords)
            words += word.left(MaxWordLength);
        word.clear();
    };
    const QString folded = text.left(MaxCharacters).normalized(QString::NormalizationForm_KD).toCaseFolded();
    for (const char32_t c : folded.toUcs4()) {
        if (isSilent(c))
            continue;
        const bool isLetter = QChar::isLetterOrNumber(c);
        const bool isSeparate = !isAscii(c) && standsAlone(c);
        if (isSeparate || !isLetter)
            endWord();
        if (!isLetter)
            continue;
        if (isAscii(c))
            word += QChar(char16_t(c));
        else
            word += plainLetter(c);
        if (isSeparate)
            endWord();
    }
    endWord();
    return words;
}
