#include "NameRules.h"
#include "RuleWords.h"
#include "WordReader.h"

using namespace Qt::StringLiterals;

namespace
{
bool isEndMark(const QString &word)
{
    return word == "end"_L1 || word == "fin"_L1 || word == "final"_L1;
}

/// Whether the title ends after the word: at the end of the name, at a division, or before words about the
/// file.
bool closesTitle(const NameTokens &name, qsizetype i)
{
    if (i + 1 < name.count() && isEndMark(name[i + 1].word))
        return true;
    return i + 1 >= name.count() || name.isDividedBefore(i + 1) ||
           name[i + 1].kind.strength != WordStrength::None;
}

/// Whether the number may be an episode's: not part of a date, a decimal or a frame size, nor about the file.
bool isFree(const NameTokens &name, qsizetype i, const NameFacts &facts)
{
    const bool isFraction = name.gapBefore(i) == QStringView(u".") && i > 0 &&
                            wholeNumber(name[i - 1].word, 4) && !isYear(name[i - 1].word);
    const bool isBeforeFile = i < facts.fileBegin || name.isAloneInBrackets(i);
    const bool isFile = name[i].kind.strength != WordStrength::None;
    return i > facts.titleBegin && isBeforeFile && !isFile && !facts.isDate(i) && !isYear(name[i].word) &&
           !isFraction;
}

bool startsRange(const NameTokens &name, qsizetype i)
{
    if (i + 1 >= name.count())
        return false;
    const bool isSpoken = isRangeWord(name[i + 1].word) && i + 2 < name.count() &&
                          wholeNumber(name[i + 2].word, 4) && wholeNumber(name[i].word, 4) &&
                          *wholeNumber(name[i].word, 4) < *wholeNumber(name[i + 2].word, 4);
    return isSpoken || (name.gapBefore(i + 1) == QStringView(u"-") && versionedNumber(name[i + 1].word));
}

/// "e02", "ep02", "E01v2".
bool episodeLetter(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    WordReader reader(name[i].word);
    if (!reader.take("ep"_L1) && !reader.take("e"_L1))
        return false;
    const std::optional<int> episode = reader.number(1, 5);
    if (!episode || !(reader.atEnd() || reader.take("v"_L1)))
        return false;
    facts.enter(i, i + 1, std::nullopt, episode);
    return true;
}

/// "Lamps Episode 4 A New Lamp 1977": the year behind an episode of a film's series.
bool isFilmEpisode(const NameTokens &name, qsizetype i, const NameFacts &facts)
{
    const bool isPlain = name[i].word == "episode"_L1 && name[i + 1].word.size() == 1;
    return isPlain && facts.year && !facts.season && facts.dateEnd == 0 && i + 2 < facts.titleEnd;
}

bool episodeWordBefore(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (!isEpisodeWord(name[i].word) || i + 1 >= name.count())
        return false;
    const QStringView gap = name.gapBefore(i + 1);
    const bool isBracketed = gap == QStringView(u"[") || gap == QStringView(u"("); // "Ep[03]"
    const bool isBehindNumber = i > 0 && wholeNumber(name[i - 1].word, 4);         // "12 Ep (01.02.2020)"
    if (name.isDividedBefore(i + 1) && (!isBracketed || isBehindNumber))
        return false;
    // "Episode 50 (2011)" is a film.
    if (i == facts.titleBegin && facts.year)
        return false;
    const std::optional<int> episode = versionedNumber(name[i + 1].word);
    if (!episode || isFilmEpisode(name, i, facts))
        return false;
    facts.enter(i, i + 2, std::nullopt, episode);
    return true;
}

/// The first word of the range that ends at `i`, such as "1" of "1-12 серии"; `i` itself without a range.
qsizetype rangeBegin(const NameTokens &name, qsizetype i, const NameFacts &facts)
{
    const bool isRange = i - 1 > facts.titleBegin && name.gapBefore(i) == QStringView(u"-") &&
                         wholeNumber(name[i - 1].word, 4);
    return isRange ? i - 1 : i;
}

/// "69. Blm", "24 серия". When it is the whole name, no title needs to precede it.
bool episodeWordBehind(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const bool isAll = i + 2 == name.count();
    if (i + 1 >= name.count() || !isEpisodeWord(name[i + 1].word) || (i == facts.titleBegin && !isAll))
        return false;
    const qsizetype first = rangeBegin(name, i, facts);
    const std::optional<int> episode = wholeNumber(name[first].word, 4);
    if (!wholeNumber(name[i].word, 4) || name[i + 1].word.size() < 3)
        return false;
    facts.enter(first, i + 2, std::nullopt, episode);
    return true;
}

/// "第12話", "12集", "12話".
bool countedEpisode(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const std::optional<int> episode = countedNumber(name[i].word);
    if (!episode)
        return false;
    facts.enter(i, i + 1, std::nullopt, episode);
    return true;
}

bool episodeWithHash(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const std::optional<int> episode = wholeNumber(name[i].word, 4);
    if (!episode || i == facts.titleBegin || !name.gapBefore(i).endsWith(u'#'))
        return false;
    facts.enter(i, i + 1, std::nullopt, episode);
    return true;
}

/// "14.5": a special between two episodes.
bool isHalfEpisode(const NameTokens &name, qsizetype i)
{
    return i + 1 < name.count() && name.gapBefore(i + 1) == QStringView(u".") && name[i].word.size() >= 2 &&
           name[i + 1].word.size() == 1 && wholeNumber(name[i + 1].word, 1) && closesTitle(name, i + 1);
}

/// "1of4", "14 of 21".
bool episodeOfMany(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    WordReader reader(name[i].word);
    const std::optional<int> episode = reader.number(1, 3);
    if (!episode || i == facts.titleBegin)
        return false;
    const bool isJoined = reader.take("of"_L1) && reader.number(1, 3) && reader.atEnd();
    const bool isSpread = reader.atEnd() && i + 2 < name.count() && name[i + 1].word == "of"_L1 &&
                          wholeNumber(name[i + 2].word, 3);
    if (!isJoined && !isSpread)
        return false;
    qsizetype first = rangeBegin(name, i, facts);
    const std::optional<int> inRange = first < i ? wholeNumber(name[first].word, 3) : episode;
    if (first - 1 > facts.titleBegin && name[first - 1].word == "part"_L1)
        --first;
    facts.enter(first, isJoined ? i + 1 : i + 3, std::nullopt, inRange);
    return true;
}

/// After a dash or alone in brackets: "Show - 12 [720p]", "[Show][12]".
bool dividedNumber(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const std::optional<int> episode = versionedNumber(name[i].word);
    const bool isBehindSeason = i >= facts.factsEnd;
    if (!episode || !isBehindSeason || !isFree(name, i, facts) || !name.isDividedBefore(i))
        return false;
    if (!startsRange(name, i) && !closesTitle(name, i) && !isHalfEpisode(name, i))
        return false;
    facts.enter(i, i + 1, std::nullopt, episode);
    return true;
}

/// Whether a language or a kind of subtitles follows; fans then number through all seasons.
bool countsThrough(const NameTokens &name, qsizetype i, const NameFacts &facts)
{
    return facts.startsWithGroup || (i + 1 < name.count() && name[i + 1].kind.kind == WordKind::Language);
}

void enterLongNumber(qsizetype i, int number, NameFacts &facts)
{
    facts.enter(i, i + 1, number / 100, number % 100);
}

/// Whether the number is more likely an event's ("ppv") or a film's, which come from discs in high
/// definition.
bool isEventOrFilm(const NameTokens &name, qsizetype i, const NameFacts &facts)
{
    if (i + 1 < name.count() && name[i + 1].word == "ppv"_L1)
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
    const qsizetype digits = name[i].word.size();
    const bool isRange = startsRange(name, i);
    if (!number || facts.season || !isFree(name, i, facts) || (digits < 2 && !isRange))
        return false;
    if (isEventOrFilm(name, i, facts))
        return false;
    const bool hasYear = facts.year && (isRange || !isYear(name[i - 1].word));
    const bool isPadded = name[i].word.startsWith(u'0');
    const bool closes = closesTitle(name, i) && (i + 1 < name.count() || facts.startsWithGroup);
    if (!closes && !isRange && !(isPadded && !hasYear))
        return false;
    if (hasYear && !facts.startsWithGroup && digits < 3)
        return false;
    if (facts.year && !hasYear && digits < 3 && !isPadded)
        return false;
    const bool hasSeason = !isPadded || digits == 4; // "102" and "0102"
    if (!countsThrough(name, i, facts) && hasSeason && *number >= 100 && !isRange)
        enterLongNumber(i, *number, facts);
    else
        facts.enter(i, i + 1, std::nullopt, number);
    return true;
}

constexpr int MaxEpisodeInHundreds = 39; // "Room 155" is a room, "Show 123" an episode

/// "show_209_name_of_the_episode", "Show.101.Name.2010.11.23.HDTV": the season in the hundreds, the episode's
/// name behind it. A year alone, or a disc's picture, means a film.
bool numberAmidName(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const std::optional<int> number = wholeNumber(name[i].word, 3);
    const bool isDated = facts.dateEnd > 0;
    if (!number || *number < 100 || facts.season || i <= facts.titleBegin || i + 1 >= name.count() ||
        i >= facts.fileBegin || facts.isDate(i) || name[i].bracket > 0 || (facts.year && !isDated) ||
        isEventOrFilm(name, i, facts))
        return false;
    const bool isFilm = facts.fileBegin < name.count() && name[facts.fileBegin].word != "hdtv"_L1;
    const QStringView before = name.gapBefore(i);
    const bool isSpread =
        before == name.gapBefore(i + 1) && (before == QStringView(u".") || before == QStringView(u"_"));
    if (isFilm || !isSpread || *number % 100 > MaxEpisodeInHundreds || wholeNumber(name[i - 1].word, 4))
        return false;
    enterLongNumber(i, *number, facts);
    return true;
}

/// "show.10910.hdtv": season 1, the episodes 9 and 10.
bool twoEpisodesInOneNumber(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const std::optional<int> number = wholeNumber(name[i].word, 5);
    if (!number || *number < 10000 || facts.season || !isFree(name, i, facts) || !closesTitle(name, i))
        return false;
    const int first = *number / 100 % 100;
    if (first + 1 != *number % 100)
        return false;
    facts.enter(i, i + 1, *number / 10000, first);
    return true;
}

/// "grp-show-x264-103": at the very end, after the words about the file.
bool numberAtVeryEnd(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const std::optional<int> number = wholeNumber(name[i].word, 3);
    if (!number || *number < 100 || i + 1 < name.count() || facts.season || facts.year ||
        facts.fileBegin >= i || name.gapBefore(i) != QStringView(u"-") ||
        name.gapBefore(i - 1) != QStringView(u"-"))
        return false;
    facts.season = *number / 100;
    facts.episode = *number % 100;
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
