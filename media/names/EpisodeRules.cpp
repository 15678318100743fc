#include "NameRules.h"
#include "RuleWords.h"

using namespace Qt::StringLiterals;

namespace
{
/// Whether the title ends after the word: at the end of the name, at a division, or before words about the
/// file.
bool closesTitle(const NameTokens &name, qsizetype i)
{
    return i + 1 >= name.count() || isListed(name[i + 1].word, WordList::End) ||
           name.isDividedBefore(i + 1) || name[i + 1].isAboutFile();
}

/// Whether the number may be an episode's: not part of a date, a decimal or a frame size, nor about the file.
bool isFree(const NameTokens &name, qsizetype i, const NameFacts &facts)
{
    const QString &before = name[i - 1].word;
    const bool isFraction = name.isJoinedBefore(i, u'.') && wholeNumber(before, 4) && !isYear(before);
    const bool isBeforeFile = i < facts.fileBegin || name.isAloneInBrackets(i);
    return i > facts.titleBegin && isBeforeFile && !name[i].isAboutFile() && !facts.isDate(i) &&
           !isYear(name[i].word) && !isFraction;
}

bool startsRange(const NameTokens &name, qsizetype i)
{
    const std::optional<int> first = wholeNumber(name[i].word, 4);
    const std::optional<int> last = wholeNumber(name[i + 2].word, 4);
    const bool isSpoken = isListed(name[i + 1].word, WordList::Range) && first && last && *first < *last;
    return isSpoken || (name.isJoinedBefore(i + 1, u'-') && versionedNumber(name[i + 1].word));
}

/// "e02", "ep02", "E01v2".
bool episodeLetter(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    WordReader reader(name[i].word);
    const std::optional<int> episode = reader.numberAfter({"ep"_L1, "e"_L1}, 5);
    return episode && (reader.atEnd() || reader.take("v"_L1)) && facts.enter(i, i + 1, std::nullopt, episode);
}

/// "Lamps Episode 4 A New Lamp 1977": the year behind an episode of a film's series.
bool isFilmEpisode(const NameTokens &name, qsizetype i, const NameFacts &facts)
{
    const bool isPlain = name[i].word == "episode"_L1 && name[i + 1].word.size() == 1;
    return isPlain && facts.year && !facts.season && facts.dateEnd == 0 && i + 2 < facts.titleEnd;
}

bool episodeWordBefore(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (!isListed(name[i].word, WordList::Episode))
        return false;
    const bool isBracketed = name.isJoinedBefore(i + 1, u'[') || name.isJoinedBefore(i + 1, u'('); // "Ep[03]"
    const bool isBehindNumber = wholeNumber(name[i - 1].word, 4).has_value(); // "12 Ep (01.02.2020)"
    if (name.isDividedBefore(i + 1) && (!isBracketed || isBehindNumber))
        return false;
    // "Episode 50 (2011)" is a film.
    if (i == facts.titleBegin && facts.year)
        return false;
    const std::optional<int> episode = versionedNumber(name[i + 1].word);
    return episode && !isFilmEpisode(name, i, facts) && facts.enter(i, i + 2, std::nullopt, episode);
}

/// The first word of the range that ends at `i`, such as "1" of "1-12 серии"; `i` itself without a range.
qsizetype rangeBegin(const NameTokens &name, qsizetype i, const NameFacts &facts)
{
    const bool isRange =
        i - 1 > facts.titleBegin && name.isJoinedBefore(i, u'-') && wholeNumber(name[i - 1].word, 4);
    return isRange ? i - 1 : i;
}

/// "69. Blm", "24 серия". When it is the whole name, no title needs to precede it.
bool episodeWordBehind(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const bool isAll = i + 2 == name.count();
    const QString &unit = name[i + 1].word;
    if (!isListed(unit, WordList::Episode) || unit.size() < 3 || (i == facts.titleBegin && !isAll) ||
        !wholeNumber(name[i].word, 4))
        return false;
    const qsizetype first = rangeBegin(name, i, facts);
    return facts.enter(first, i + 2, std::nullopt, wholeNumber(name[first].word, 4));
}

/// "第12話", "12集", "12話".
bool countedEpisode(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const std::optional<int> episode = countedNumber(name[i].word);
    return episode && facts.enter(i, i + 1, std::nullopt, episode);
}

bool episodeWithHash(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const std::optional<int> episode = wholeNumber(name[i].word, 4);
    return episode && i != facts.titleBegin && name.gapBefore(i).endsWith(u'#') &&
           facts.enter(i, i + 1, std::nullopt, episode);
}

/// "14.5": a special between two episodes.
bool isHalfEpisode(const NameTokens &name, qsizetype i)
{
    return name.isJoinedBefore(i + 1, u'.') && name[i].word.size() >= 2 && wholeNumber(name[i + 1].word, 1) &&
           closesTitle(name, i + 1);
}

/// "1of4", "14 of 21".
bool episodeOfMany(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    WordReader reader(name[i].word);
    const std::optional<int> episode = reader.number(3);
    if (!episode || i == facts.titleBegin)
        return false;
    const bool isJoined = reader.numberAfter({"of"_L1}, 3) && reader.atEnd();
    const bool isSpread = reader.atEnd() && name[i + 1].word == "of"_L1 && wholeNumber(name[i + 2].word, 3);
    if (!isJoined && !isSpread)
        return false;
    qsizetype first = rangeBegin(name, i, facts);
    const std::optional<int> inRange = first < i ? wholeNumber(name[first].word, 3) : episode;
    if (first - 1 > facts.titleBegin && name[first - 1].word == "part"_L1)
        --first;
    return facts.enter(first, isJoined ? i + 1 : i + 3, std::nullopt, inRange);
}

/// After a dash or alone in brackets: "Show - 12 [720p]", "[Show][12]".
bool dividedNumber(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const std::optional<int> episode = versionedNumber(name[i].word);
    const bool isBehindSeason = i >= facts.factsEnd;
    if (!episode || !isBehindSeason || !isFree(name, i, facts) || !name.isDividedBefore(i))
        return false;
    const bool closes = startsRange(name, i) || closesTitle(name, i) || isHalfEpisode(name, i);
    return closes && facts.enter(i, i + 1, std::nullopt, episode);
}

/// Whether a language or a kind of subtitles follows; fans then number through all seasons.
bool countsThrough(const NameTokens &name, qsizetype i, const NameFacts &facts)
{
    return facts.startsWithGroup || name[i + 1].kind == WordKind::Language;
}

/// The season in the number's hundreds.
bool enterLongNumber(qsizetype i, int number, NameFacts &facts)
{
    return facts.enter(i, i + 1, number / 100, number % 100);
}

/// Whether the number is more likely an event's ("ppv") or a film's, which come from discs in high
/// definition.
bool isEventOrFilm(const NameTokens &name, qsizetype i, const NameFacts &facts)
{
    if (name[i + 1].word == "ppv"_L1)
        return true;
    if (facts.startsWithGroup || name[i].word.startsWith(u'0'))
        return false;
    for (qsizetype at = facts.fileBegin; at < name.count(); ++at) {
        const QString &known = name[at].known;
        if (known == "bluray"_L1 || known == "bdrip"_L1 || known == "brrip"_L1)
            return true;
    }
    return false;
}

/// A number that closes the title: "Show 01 720p", "Show.103.HDTV", "[Group] Show 127". Where a year says
/// that it is a film, or a season was named without an episode, the number is the title's.
bool closingNumber(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const std::optional<int> number = versionedNumber(name[i].word);
    if (!number || facts.season || !isFree(name, i, facts))
        return false;
    const qsizetype digits = name[i].word.size();
    const bool isRange = startsRange(name, i);
    if ((digits < 2 && !isRange) || isEventOrFilm(name, i, facts))
        return false;
    const bool hasYear = facts.year && (isRange || !isYear(name[i - 1].word));
    const bool isPadded = name[i].word.startsWith(u'0');
    const bool closes = closesTitle(name, i) && (i + 1 < name.count() || facts.startsWithGroup);
    if (!closes && !isRange && !(isPadded && !hasYear))
        return false;
    const bool isTitles = hasYear ? !facts.startsWithGroup : facts.year && !isPadded;
    if (isTitles && digits < 3)
        return false;
    const bool hasSeason = !isPadded || digits == 4; // "102" and "0102"
    if (!countsThrough(name, i, facts) && hasSeason && *number >= 100 && !isRange)
        return enterLongNumber(i, *number, facts);
    return facts.enter(i, i + 1, std::nullopt, number);
}

/// "show_209_name_of_the_episode", "Show.101.Name.2010.11.23.HDTV": the season in the hundreds, the episode's
/// name behind it. A year alone, or a disc's picture, means a film.
bool numberAmidName(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    constexpr int MaxEpisode = 39; // "Room 155" is a room, "Show 123" an episode
    const int number = wholeNumber(name[i].word, 3).value_or(0);
    const bool isDated = facts.dateEnd > 0;
    if (number < 100 || facts.season || i <= facts.titleBegin || i + 1 >= name.count() ||
        i >= facts.fileBegin || facts.isDate(i) || name[i].bracket > 0 || (facts.year && !isDated) ||
        isEventOrFilm(name, i, facts))
        return false;
    const bool isFilm = facts.fileBegin < name.count() && name[facts.fileBegin].word != "hdtv"_L1;
    const bool isSpread = (name.isJoinedBefore(i, u'.') && name.isJoinedBefore(i + 1, u'.')) ||
                          (name.isJoinedBefore(i, u'_') && name.isJoinedBefore(i + 1, u'_'));
    return !isFilm && isSpread && number % 100 <= MaxEpisode && !wholeNumber(name[i - 1].word, 4) &&
           enterLongNumber(i, number, facts);
}

/// "show.10910.hdtv": season 1, the episodes 9 and 10.
bool twoEpisodesInOneNumber(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const int number = wholeNumber(name[i].word, 5).value_or(0);
    const int first = number / 100 % 100;
    return number >= 10000 && !facts.season && isFree(name, i, facts) && closesTitle(name, i) &&
           first + 1 == number % 100 && facts.enter(i, i + 1, number / 10000, first);
}

/// "grp-show-x264-103": at the very end, after the words about the file.
bool numberAtVeryEnd(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const int number = wholeNumber(name[i].word, 3).value_or(0);
    if (number < 100 || i + 1 < name.count() || facts.season || facts.year || facts.fileBegin >= i ||
        !name.isJoinedBefore(i, u'-') || !name.isJoinedBefore(i - 1, u'-'))
        return false;
    facts.season = number / 100;
    facts.episode = number % 100;
    return true;
}

constexpr NameRule EpisodeRules[] = {
    {"Show E02", episodeLetter},          {"Show Episode 2", episodeWordBefore},
    {"Show 2. Bölüm", episodeWordBehind}, {"[Show][第02話]", countedEpisode},
    {"Show #02", episodeWithHash},        {"Show 2of6", episodeOfMany},
    {"Show - 02 [720p]", dividedNumber},
};

constexpr NameRule NumberRules[] = {
    {"show.10910.hdtv", twoEpisodesInOneNumber},
    {"Show 02 720p", closingNumber},
    {"show_209_name_of_the_episode", numberAmidName},
    {"grp-show-x264-103", numberAtVeryEnd},
};
} // namespace

std::span<const NameRule> episodeRules()
{
    return EpisodeRules;
}

std::span<const NameRule> numberRules()
{
    return NumberRules;
}
