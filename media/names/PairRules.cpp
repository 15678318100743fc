#include "NameRules.h"
#include "RuleWords.h"
#include "WordReader.h"

using namespace Qt::StringLiterals;

namespace
{
constexpr int MaxSeason = 39; // pairs with more are rather a clock's or a version's

bool isNumber(const NameTokens &name, qsizetype i)
{
    return i >= 0 && i < name.count() && wholeNumber(name[i].word, 8);
}

/// Whether two words are joined by one point, hyphen or underscore.
bool isTightPair(const NameTokens &name, qsizetype i)
{
    const QStringView gap = i + 1 < name.count() ? name.gapBefore(i + 1) : QStringView();
    return gap == QStringView(u".") || gap == QStringView(u"_") || gap == QStringView(u"-");
}

/// Whether a pair of numbers stands by itself: three in a row are a date or a clock's, unless the third is a
/// year.
bool isAlonePair(const NameTokens &name, qsizetype i, qsizetype titleBegin)
{
    const auto isPartOfRow = [&](qsizetype at) {
        return at >= titleBegin && isNumber(name, at) && !isYear(name[at].word);
    };
    const bool isJoinedBefore = isPartOfRow(i - 1) && name.gapBefore(i) == name.gapBefore(i + 1);
    const bool isJoinedBehind =
        i + 2 < name.count() && isPartOfRow(i + 2) && name.gapBefore(i + 2) == name.gapBefore(i + 1);
    return !isJoinedBefore && !isJoinedBehind;
}

/// Two numbers with a point or an underscore between them: "Show.02.09", "Show 6.01 - Name", "Show [5.134]".
/// "Show 2.22", "Show 5.1" are no such pairs: the season would have two digits or the episode its zero.
bool pairBehindTitle(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (i == facts.titleBegin || i + 1 >= facts.fileBegin || facts.isDate(i) || !isTightPair(name, i) ||
        name.gapBefore(i + 1) == QStringView(u"-") || !isAlonePair(name, i, facts.titleBegin))
        return false;
    const std::optional<int> season = wholeNumber(name[i].word, 2);
    const std::optional<int> episode = wholeNumber(name[i + 1].word, 3);
    if (!season || !episode || *season > MaxSeason)
        return false;
    const qsizetype episodeDigits = name[i + 1].word.size();
    const bool isPadded = episodeDigits == 2 && name[i + 1].word.startsWith(u'0');
    const bool isLong = episodeDigits == 3 && name[i].bracket > 0;
    // "Show 10.30 to Dawn": a clock's.
    const bool isEven = name[i].word.size() == 2 && episodeDigits == 2 &&
                        (name[i].word.startsWith(u'0') || name.gapBefore(i + 1) == QStringView(u"_") ||
                         i + 2 >= name.count() || name.isDividedBefore(i + 2));
    if (!isPadded && !isLong && !isEven)
        return false;
    facts.enter(i, i + 2, season, episode);
    return true;
}

/// "Show.S02.09", "Show S02_09": a season with a plain number of two digits behind it.
bool seasonAndPlainNumber(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    WordReader reader(name[i].word);
    const std::optional<int> season = reader.take("s"_L1) ? reader.number(1, 2) : std::nullopt;
    if (!season || !reader.atEnd() || !isTightPair(name, i) || i == facts.titleBegin ||
        name.gapBefore(i + 1) == QStringView(u"-"))
        return false;
    const std::optional<int> episode = wholeNumber(name[i + 1].word, 2);
    const bool isFile = name[i + 1].kind.strength == WordStrength::Strong;
    const bool goesOn = isNumber(name, i + 2) && !isYear(name[i + 2].word);
    if (!episode || name[i + 1].word.size() != 2 || isFile || goesOn)
        return false;
    facts.enter(i, i + 2, season, episode);
    return true;
}

/// "Episode #1.2" as film databases write it.
bool hashedPair(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (!name.gapBefore(i).endsWith(u'#') || i + 1 >= name.count() ||
        name.gapBefore(i + 1) != QStringView(u"."))
        return false;
    const std::optional<int> season = wholeNumber(name[i].word, 2);
    const std::optional<int> episode = wholeNumber(name[i + 1].word, 4);
    if (!season || !episode)
        return false;
    const qsizetype begin = i > facts.titleBegin && isEpisodeWord(name[i - 1].word) ? i - 1 : i;
    facts.enter(begin, i + 2, season, episode);
    return true;
}

/// Whether nothing in the name says that it is a film.
bool mayBeEpisode(const NameTokens &name, const NameFacts &facts)
{
    return facts.fileBegin >= name.count() && (!facts.year || facts.dateEnd > 0);
}

void beginTitleBehind(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    facts.titleBegin = std::min(i, name.count());
    facts.factsEnd = std::max(facts.factsEnd, i);
}

/// "2-06. Name", "11.14 - Name": all that the name begins with.
bool leadingPair(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (i != facts.titleBegin || !isTightPair(name, i) || !mayBeEpisode(name, facts))
        return false;
    const std::optional<int> season = wholeNumber(name[i].word, 2);
    const std::optional<int> episode = wholeNumber(name[i + 1].word, 2);
    const bool isBeforeDate = facts.dateEnd > 0 && facts.dateBegin == i + 2;
    if (!season || !episode || *season > MaxSeason || facts.isDate(i) ||
        (name[i + 1].word.size() < 2 && !isBeforeDate) || !isAlonePair(name, i, i))
        return false;
    facts.season = season;
    facts.episode = episode;
    beginTitleBehind(name, i + 2, facts);
    return true;
}

/// "321 - Name", "611-612 - Name": a running number of three digits, or two of them, before a dash.
bool leadingLongNumber(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (i != facts.titleBegin || name[i].word.size() != 3 || !mayBeEpisode(name, facts))
        return false;
    const std::optional<int> episode = wholeNumber(name[i].word, 3);
    const bool isRange = isTightPair(name, i) && isNumber(name, i + 1) && name[i + 1].word.size() == 3;
    const qsizetype next = isRange ? i + 2 : i + 1;
    if (!episode || next >= name.count() || !name.isDividedBefore(next))
        return false;
    facts.episode = episode;
    beginTitleBehind(name, next, facts);
    return true;
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
