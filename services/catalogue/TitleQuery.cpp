#include "TitleQuery.h"

#include "SearchWords.h"

#include <services/video/FileNameParser.h>

#include <algorithm>

using namespace Qt::StringLiterals;

TitleQuery titleQuery(const QString &text)
{
    using Demand = TitleQuery::Reading::Demand;
    const VideoFileComponents said = parseVideoName(text);
    const QStringList typed = searchWords(text);
    const QStringList title = searchWords(said.title);

    // A title may look like a year or an episode ("1917"), so the text as it stands comes first.
    TitleQuery query{{}, said.year, said.season, said.episode};
    if (!typed.isEmpty())
        query.readings += {typed, Demand::AllWords, false};
    if (!title.isEmpty()) {
        query.readings += {title, Demand::AllWords, true};
        query.readings += {title, Demand::HalfOfThem, true};
    }
    return query;
}

QString matchExpression(const TitleQuery::Reading &reading, WordMatch match)
{
    const QString term = match == WordMatch::Begun ? u"\"%1\"*"_s : u"\"%1\""_s;
    QStringList terms;
    for (const QString &word : reading.words)
        terms += term.arg(word);
    return terms.join(reading.demand == TitleQuery::Reading::Demand::AllWords ? " AND "_L1 : " OR "_L1);
}

std::optional<int> titleCloseness(const TitleQuery::Reading &reading, const QString &title)
{
    const QStringList titleWords = searchWords(title);
    const auto isWhole = [&](const QString &word) { return titleWords.contains(word); };
    const auto isBegun = [&](const QString &word) {
        return std::any_of(titleWords.begin(), titleWords.end(),
                           [&](const QString &candidate) { return candidate.startsWith(word); });
    };
    const auto whole = std::count_if(reading.words.begin(), reading.words.end(), isWhole);
    const auto begun = std::count_if(reading.words.begin(), reading.words.end(), isBegun);
    const bool hasWholeTitle = std::all_of(titleWords.begin(), titleWords.end(),
                                           [&](const QString &word) { return reading.words.contains(word); });
    // A title of one word within a longer text is a coincidence, one of several words is not.
    const bool isNamed = hasWholeTitle && titleWords.size() > 1;
    if (reading.demand == TitleQuery::Reading::Demand::HalfOfThem && !isNamed &&
        2 * begun <= reading.words.size())
        return std::nullopt;
    if (whole < reading.words.size())
        return 0;
    return hasWholeTitle ? 2 : 1;
}
