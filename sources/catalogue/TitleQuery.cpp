#include "TitleQuery.h"

#include "SearchWords.h"

#include <media/names/FileNameParser.h>

#include <algorithm>

using namespace Qt::StringLiterals;

TitleQuery titleQuery(const QString &text)
{
    using Demand = TitleQuery::Reading::Demand;
    const VideoFileComponents said = parseVideoName(text);
    QStringList typed = searchWords(text);
    QStringList title = searchWords(said.title);
    typed.removeDuplicates();
    title.removeDuplicates();

    // A title may look like a year or an episode ("1917"), so the unchanged text comes first.
    TitleQuery query{{}, said.year, said.season, said.episode};
    const bool namesFacts = query.year || query.season || query.episode;
    if (!typed.isEmpty())
        query.readings += {typed, Demand::AllWords, false};
    if (!title.isEmpty() && (title != typed || namesFacts))
        query.readings += {title, Demand::AllWords, true};
    if (!title.isEmpty())
        query.readings += {title, Demand::HalfOfThem, true};
    return query;
}

namespace
{
constexpr qsizetype MaxPairedWords = 8;

/// Single letters begin too many words, so they are only used alone.
QStringList termsFor(const QStringList &words, WordMatch match)
{
    QStringList terms;
    for (const QString &word : words) {
        const bool isBegun = match == WordMatch::Begun && (word.size() > 1 || words.size() == 1);
        terms += (isBegun ? u"\"%1\"*"_s : u"\"%1\""_s).arg(word);
    }
    return terms;
}

/// With several words, more than half means at least two, and two words occur in few titles where one, such
/// as "the", may occur in a third of all. Of a long text the longest words are used, which are the rarest.
QString anyTwoOf(QStringList words, WordMatch match)
{
    std::stable_sort(words.begin(), words.end(),
                     [](const QString &a, const QString &b) { return a.size() > b.size(); });
    const QStringList terms = termsFor(words.mid(0, MaxPairedWords), match);
    if (terms.size() == 1)
        return terms.first();
    QStringList pairs;
    for (qsizetype first = 0; first < terms.size(); ++first) {
        for (qsizetype second = first + 1; second < terms.size(); ++second)
            pairs += u'(' + terms[first] + u" AND "_s + terms[second] + u')';
    }
    return pairs.join(" OR "_L1);
}
} // namespace

QString matchExpression(const TitleQuery::Reading &reading, WordMatch match)
{
    if (reading.demand == TitleQuery::Reading::Demand::HalfOfThem)
        return anyTwoOf(reading.words, match);
    return termsFor(reading.words, match).join(" AND "_L1);
}

QString phraseExpression(const TitleQuery::Reading &reading, WordMatch match)
{
    const bool isWhole = reading.demand == TitleQuery::Reading::Demand::AllWords;
    const qsizetype length = isWhole ? reading.words.size() : std::min<qsizetype>(2, reading.words.size());
    QStringList phrases;
    for (qsizetype first = 0; first + length <= reading.words.size(); ++first)
        phrases += (match == WordMatch::Begun ? u"\"%1\"*"_s : u"\"%1\""_s)
                       .arg(reading.words.mid(first, length).join(u' '));
    return phrases.join(" OR "_L1);
}

std::optional<TitleAnswer> titleAnswer(const TitleQuery::Reading &reading, const QString &title)
{
    const QStringList titleWords = searchWords(title);
    qsizetype whole = 0;
    qsizetype begun = 0;
    TitleAnswer answer;
    for (const QString &word : reading.words) {
        const bool isWhole = titleWords.contains(word);
        const bool isBegun =
            isWhole || std::any_of(titleWords.begin(), titleWords.end(),
                                   [&](const QString &candidate) { return candidate.startsWith(word); });
        whole += isWhole ? 1 : 0;
        begun += isBegun ? 1 : 0;
        answer.letters += isBegun ? static_cast<int>(word.size()) : 0;
    }
    const bool hasWholeTitle = std::all_of(titleWords.begin(), titleWords.end(),
                                           [&](const QString &word) { return reading.words.contains(word); });
    // A one-word title within a longer text is a coincidence; a title of several words is not.
    const bool isNamed = hasWholeTitle && titleWords.size() > 1;
    if (reading.demand == TitleQuery::Reading::Demand::HalfOfThem && !isNamed &&
        2 * begun <= reading.words.size())
        return std::nullopt;
    if (whole == reading.words.size())
        answer.closeness = hasWholeTitle ? 2 : 1;
    return answer;
}
