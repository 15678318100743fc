#include "NameRules.h"
#include "RuleWords.h"

using namespace Qt::StringLiterals;

namespace
{
constexpr int MaxSeason = 39; // pairs with more are rather a clock's or a version's

/// Whether a point or an underscore alone joins a word with the next one.
bool isPointedPair(const NameTokens &name, qsizetype i)
{
    return name.isJoinedBefore(i + 1, u'.') || name.isJoinedBefore(i + 1, u'_');
}

/// The same, or a hyphen.
bool isTightPair(const NameTokens &name, qsizetype i)
{
    return isPointedPair(name, i) || name.isJoinedBefore(i + 1, u'-');
}

bool isNumberButNoYear(const QString &word)
{
    return wholeNumber(word, 8) && !isYear(word);
}

/// Whether a pair of numbers stands by itself: three in a row are a date or a clock's, unless the third is a
/// year.
bool isAlonePair(const NameTokens &name, qsizetype i, qsizetype titleBegin)
{
    const QStringView gap = name.gapBefore(i + 1);
    const bool isJoinedBefore =
        i > titleBegin && isNumberButNoYear(name[i - 1].word) && name.gapBefore(i) == gap;
    const bool isJoinedBehind = isNumberButNoYear(name[i + 2].word) && name.gapBefore(i + 2) == gap;
    return !isJoinedBefore && !isJoinedBehind;
}

/// Two numbers with a point or an underscore between them: "Show.02.09", "Show 6.01 - Name", "Show [5.134]".
/// "Show 2.22", "Show 5.1" are no such pairs: the season would have two digits or the episode its zero.
bool pairBehindTitle(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (i == facts.titleBegin || i + 1 >= facts.fileBegin || facts.isDate(i) || !isPointedPair(name, i) ||
        !isAlonePair(name, i, facts.titleBegin))
        return false;
    const QString &word = name[i + 1].word;
    const std::optional<int> season = wholeNumber(name[i].word, 2);
    const std::optional<int> episode = wholeNumber(word, 3);
    if (!season || !episode || *season > MaxSeason)
        return false;
    const bool isPadded = word.size() == 2 && word.startsWith(u'0');
    const bool isLong = word.size() == 3 && name[i].bracket > 0;
    // "Show 10.30 to Dawn": a clock's.
    const bool isEven = name[i].word.size() == 2 && word.size() == 2 &&
                        (name[i].word.startsWith(u'0') || name.isJoinedBefore(i + 1, u'_') ||
                         i + 2 >= name.count() || name.isDividedBefore(i + 2));
    return (isPadded || isLong || isEven) && facts.enter(i, i + 2, season, episode);
}

/// "Show.S02.09", "Show S02_09": a season with a plain number of two digits behind it.
bool seasonAndPlainNumber(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    WordReader reader(name[i].word);
    const std::optional<int> season = reader.numberAfter({"s"_L1}, 2);
    if (!season || !reader.atEnd() || !isPointedPair(name, i) || i == facts.titleBegin)
        return false;
    const std::optional<int> episode = wholeNumber(name[i + 1].word, 2);
    return episode && name[i + 1].word.size() == 2 && !name[i + 1].isStrong() &&
           !isNumberButNoYear(name[i + 2].word) && facts.enter(i, i + 2, season, episode);
}

/// "Episode #1.2" as film databases write it.
bool hashedPair(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (!name.gapBefore(i).endsWith(u'#') || !name.isJoinedBefore(i + 1, u'.'))
        return false;
    const std::optional<int> season = wholeNumber(name[i].word, 2);
    const std::optional<int> episode = wholeNumber(name[i + 1].word, 4);
    const bool isNamed = i > facts.titleBegin && isListed(name[i - 1].word, WordList::Episode);
    return season && episode && facts.enter(isNamed ? i - 1 : i, i + 2, season, episode);
}

/// Whether nothing in the name says that it is a film.
bool mayBeEpisode(const NameTokens &name, const NameFacts &facts)
{
    return facts.fileBegin >= name.count() && (!facts.year || facts.dateEnd > 0);
}

/// Stores the facts in front of the title, which begins at word `i`.
bool enterBeforeTitle(const NameTokens &name, qsizetype i, std::optional<int> season,
                      std::optional<int> episode, NameFacts &facts)
{
    facts.season = season;
    facts.episode = episode;
    facts.titleBegin = std::min(i, name.count());
    facts.factsEnd = std::max(facts.factsEnd, i);
    return true;
}

/// "2-06. Name", "11.14 - Name": all that the name begins with.
bool leadingPair(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (i != facts.titleBegin || !isTightPair(name, i) || !mayBeEpisode(name, facts))
        return false;
    const std::optional<int> season = wholeNumber(name[i].word, 2);
    const std::optional<int> episode = wholeNumber(name[i + 1].word, 2);
    const bool isBeforeDate = facts.dateEnd > 0 && facts.dateBegin == i + 2;
    return season && episode && *season <= MaxSeason && !facts.isDate(i) &&
           (name[i + 1].word.size() == 2 || isBeforeDate) && isAlonePair(name, i, i) &&
           enterBeforeTitle(name, i + 2, season, episode, facts);
}

/// "321 - Name", "611-612 - Name": a running number of three digits, or two of them, before a dash.
bool leadingLongNumber(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const auto isLong = [&name](qsizetype at) {
        return name[at].word.size() == 3 && wholeNumber(name[at].word, 3);
    };
    if (i != facts.titleBegin || !isLong(i) || !mayBeEpisode(name, facts))
        return false;
    const qsizetype next = isTightPair(name, i) && isLong(i + 1) ? i + 2 : i + 1;
    return name.isDividedBefore(next) &&
           enterBeforeTitle(name, next, facts.season, wholeNumber(name[i].word, 3), facts);
}

constexpr NameRule PairRules[] = {
    {"Episode #1.2", hashedPair},
    {"Show.S02.09", seasonAndPlainNumber},
};

constexpr NameRule BarePairRules[] = {
    {"Show.02.09 · Show 6.01 - Name", pairBehindTitle},
    {"2-06. Name", leadingPair},
    {"321 - Name", leadingLongNumber},
};
} // namespace

std::span<const NameRule> pairRules()
{
    return PairRules;
}

std::span<const NameRule> barePairRules()
{
    return BarePairRules;
}
