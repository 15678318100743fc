#include "SearchWords.h"

#include <QHash>
#include <QList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MaxCharacters = 1024;
constexpr qsizetype MaxWords = 32;
constexpr qsizetype MaxWordLength = 40;

/// The plain form of letters that Unicode does not decompose.
QString plainLetter(char32_t c)
{
    static const QHash<char32_t, QString> table = {
        {U'ß', u"ss"_s}, {U'æ', u"ae"_s}, {U'œ', u"oe"_s}, {U'ø', u"o"_s}, {U'ł', u"l"_s},
        {U'đ', u"d"_s},  {U'ð', u"d"_s},  {U'þ', u"th"_s}, {U'ı', u"i"_s}, {U'ħ', u"h"_s},
    };
    return table.value(c, QString::fromUcs4(&c, 1));
}

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

bool isSilent(char32_t c)
{
    // Skip the marks of decomposed letters, and apostrophes: "dont" finds "don't".
    const QChar::Category category = QChar::category(c);
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_SpacingCombining ||
           category == QChar::Other_Format || c == U'\'' || c == U'’' || c == U'‘' || c == U'`' ||
           c == U'´' || c == U'ʼ';
}

class WordCollector
{
public:
    void add(char32_t c)
    {
        if (isSilent(c))
            return;
        if (!QChar::isLetterOrNumber(c))
            return endWord();
        if (standsAlone(c))
            endWord();
        m_word += plainLetter(c);
        if (standsAlone(c))
            endWord();
    }

    void endWord()
    {
        if (!m_word.isEmpty() && m_words.size() < MaxWords)
            m_words += m_word.left(MaxWordLength);
        m_word.clear();
    }

    QStringList words() const { return m_words; }

private:
    QString m_word;
    QStringList m_words;
};

/// The fast path for most titles: ASCII letters need no decomposition.
QStringList wordsOfAscii(QStringView text)
{
    QStringList words;
    QString word;
    const auto endWord = [&] {
        if (!word.isEmpty() && words.size() < MaxWords)
            words += word.left(MaxWordLength);
        word.clear();
    };
    for (const QChar c : text) {
        if (c.isLetterOrNumber())
            word += c.toLower();
        else if (c != u'\'' && c != u'`')
            endWord();
    }
    endWord();
    return words;
}

bool isAscii(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}
} // namespace

QStringList searchWords(const QString &text)
{
    if (const QStringView read = QStringView(text).left(MaxCharacters); isAscii(read))
        return wordsOfAscii(read);
    WordCollector collector;
    const QString folded = text.left(MaxCharacters).normalized(QString::NormalizationForm_KD).toCaseFolded();
    for (const char32_t c : folded.toUcs4())
        collector.add(c);
    collector.endWord();
    return collector.words();
}
