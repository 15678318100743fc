#include "NameTokens.h"

#include <QStringList>

#include <string_view>

using namespace Qt::StringLiterals;

namespace
{
bool isWordCharacter(QStringView name, qsizetype index)
{
    const QChar c = name[index];
    if (c.isLetterOrNumber() || c.isMark() || c.isSurrogate())
        return true;
    // An apostrophe belongs to the word it stands in.
    const bool isApostrophe = c == u'\'' || c == u'’' || c == u'`';
    return isApostrophe && index > 0 && index + 1 < name.size() && name[index - 1].isLetter() &&
           name[index + 1].isLetter();
}

bool isOpening(QChar c)
{
    return std::u16string_view(u"([{【（").find(c.unicode()) != std::u16string_view::npos;
}

bool isClosing(QChar c)
{
    return std::u16string_view(u")]}】）").find(c.unicode()) != std::u16string_view::npos;
}

bool isBlank(QChar c)
{
    return c.isSpace() || c == u'_' || c == u'.';
}

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

/// Skips digits to the left of `end`, not beyond `begin`.
qsizetype digitsBefore(QStringView name, qsizetype begin, qsizetype end)
{
    while (end > begin && isDigit(name[end - 1]))
        --end;
    return end;
}

/// The beginning of the season in the words "Brack1x02" or "BrackS01E02"; the word's end without one.
qsizetype gluedSeason(QStringView name, qsizetype begin, qsizetype end)
{
    constexpr qsizetype MinTitle = 2;
    const qsizetype episode = digitsBefore(name, begin, end);
    if (end - episode < 2 || end - episode > 3 || episode - begin < MinTitle + 2)
        return end;
    const QChar mark = name[episode - 1].toLower();
    qsizetype season = digitsBefore(name, begin, episode - 1);
    if (episode - 1 - season < 1 || episode - 1 - season > 2)
        return end;
    if (mark == u'e' && season > begin && name[season - 1].toLower() == u's')
        --season;
    else if (mark != u'x')
        return end;
    const bool isBehindWord =
        season - begin >= MinTitle && name[season - 1].isLetter() && name[season - 2].isLetter();
    return isBehindWord ? season : end;
}

QString withoutExtension(const QString &name)
{
    static const QStringList extensions =
        u"mkv avi mp4 m4v mov wmv mpg mpeg ts m2ts webm flv ogm ogv iso vob divx rmvb 3gp srt ass ssa sub vtt idx nfo"_s
            .split(u' ');
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 && extensions.contains(name.mid(dot + 1).toLower()) ? name.left(dot) : name;
}
} // namespace

NameTokens::NameTokens(const QString &name) : m_name(withoutExtension(name.trimmed()).left(MaxCharacters))
{
    QList<Bracket> open = {Bracket()}; // the outside is the bottom element
    int pairs = 0;
    qsizetype begin = -1;
    for (qsizetype i = 0; i < m_name.size(); ++i) {
        if (isWordCharacter(m_name, i)) {
            begin = begin < 0 ? i : begin;
            continue;
        }
        if (begin >= 0)
            addWord(begin, i, open.last());
        begin = -1;
        if (isOpening(m_name[i]))
            open += Bracket{++pairs, open.last().outer > 0 ? open.last().outer : pairs,
                            m_name[i] != u'(' && m_name[i] != u'（'};
        else if (isClosing(m_name[i]) && open.size() > 1)
            open.removeLast();
    }
    if (begin >= 0)
        addWord(begin, m_name.size(), open.last());
    classifyPairs();
}

void NameTokens::addWord(qsizetype begin, qsizetype end, const Bracket &bracket)
{
    const qsizetype season = gluedSeason(m_name, begin, end);
    addToken(begin, season, bracket);
    if (season < end)
        addToken(season, end, bracket);
}

void NameTokens::addToken(qsizetype begin, qsizetype end, const Bracket &bracket)
{
    if (m_tokens.size() >= MaxTokens)
        return;
    // Compatibility forms: full-width digits count as digits.
    const QString word = m_name.mid(begin, end - begin).normalized(QString::NormalizationForm_KC).toLower();
    m_tokens +=
        NameToken{classOfWord(word), begin, end, word, bracket.number, bracket.outer, bracket.isSquare, word};
}

/// Two words that make one ("Blu-ray", "H.264") share their class.
void NameTokens::classifyPairs()
{
    for (qsizetype i = 0; i + 1 < m_tokens.size(); ++i) {
        if (m_tokens[i + 1].begin - m_tokens[i].end != 1)
            continue;
        const QString joined = m_tokens[i].word + m_tokens[i + 1].word;
        const WordClass both = classOfJoinedWords(joined);
        if (both.strength != WordStrength::Strong)
            continue;
        for (NameToken *part : {&m_tokens[i], &m_tokens[i + 1]}) {
            static_cast<WordClass &>(*part) = both;
            part->known = joined;
        }
    }
}

QStringView NameTokens::gapBefore(qsizetype index) const
{
    if (index < 0 || index >= count())
        return {};
    const qsizetype from = index == 0 ? 0 : m_tokens[index - 1].end;
    return QStringView(m_name).mid(from, m_tokens[index].begin - from);
}

bool NameTokens::isJoinedBefore(qsizetype index, char16_t character) const
{
    const QStringView gap = gapBefore(index);
    return gap.size() == 1 && gap[0] == character;
}

bool NameTokens::isDividedBefore(qsizetype index) const
{
    const QStringView gap = gapBefore(index);
    for (qsizetype i = 0; i < gap.size(); ++i) {
        if (isOpening(gap[i]) || isClosing(gap[i]))
            return true;
        const bool isDash = gap[i] == u'-' || gap[i] == u'–' || gap[i] == u'—';
        if (isDash && i > 0 && i + 1 < gap.size() && isBlank(gap[i - 1]) && isBlank(gap[i + 1]))
            return true;
    }
    return false;
}

bool NameTokens::isAloneInBrackets(qsizetype index) const
{
    const int bracket = (*this)[index].bracket;
    return bracket > 0 && (*this)[index - 1].bracket != bracket && (*this)[index + 1].bracket != bracket;
}
