#include "NameRules.h"
#include "RuleWords.h"

using namespace Qt::StringLiterals;

namespace
{
/// The number behind an episode's mark: "e02", "ep02", "xe02".
std::optional<int> markedEpisode(WordReader reader)
{
    constexpr qsizetype MaxDigits = 5;
    const bool isCrossed = reader.take("x"_L1);
    const bool isMarked = reader.takeAny({"ep"_L1, "e"_L1});
    return isCrossed || isMarked ? reader.number(MaxDigits) : std::nullopt;
}

bool seasonEpisode(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    WordReader reader(name[i].word);
    // "t01" is the Spanish way, which counts only with an episode behind it.
    const std::optional<int> season = reader.numberAfter({"s"_L1, "t"_L1}, 4);
    if (!season)
        return false;
    if (const std::optional<int> episode = markedEpisode(reader))
        return facts.enter(i, i + 1, season, episode);
    // "S01 E02", "S01-x02"; and "S01EP(02", where the mark stands with the season.
    const bool marksEpisode = reader.takeAny({"ep"_L1, "e"_L1});
    const QString &next = name[i + 1].word;
    const std::optional<int> episode = marksEpisode ? wholeNumber(next, 4) : markedEpisode(WordReader(next));
    return reader.atEnd() && episode && facts.enter(i, i + 2, season, episode);
}

/// "S01.E.02"
bool spreadSeasonEpisode(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (name[i + 1].word != "e"_L1)
        return false;
    WordReader reader(name[i].word);
    const std::optional<int> season = reader.numberAfter({"s"_L1}, 4);
    const std::optional<int> episode = wholeNumber(name[i + 2].word, 4);
    return season && reader.atEnd() && episode && facts.enter(i, i + 3, season, episode);
}

bool crossedNumbers(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    WordReader reader(name[i].word);
    const std::optional<int> season = reader.number(4);
    const bool isPlausible = season && (*season < 100 || isYear(QString::number(*season)));
    const bool isFrameSize = name[i].isAboutFile();
    if (isFrameSize || !isPlausible || !reader.take("x"_L1))
        return false;
    const std::optional<int> episode = reader.number(3);
    // "5.1x2": so many sound channels. "2x4.Title" may be a title, "1x02.Title" is not.
    const bool isFraction = name.isJoinedBefore(i, u'.') && wholeNumber(name[i - 1].word, 2);
    const bool isShort = name[i].word.size() < 4;
    if (isShort && (isFraction || i == facts.titleBegin))
        return false;
    const bool isWholeSeason = reader.take("all"_L1);
    // "2x05x06", "2x05a"
    const bool isRange = (reader.take("x"_L1) && reader.number(3)) || reader.takeAny({"a"_L1, "b"_L1});
    return (episode || isWholeSeason) && (reader.atEnd() || isRange) &&
           facts.enter(i, i + 1, season, episode);
}

/// "Cap.102" counts the season in its hundreds.
bool chapterWithSeason(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const int number = wholeNumber(name[i + 1].word, 4).value_or(0);
    return name[i].word == "cap"_L1 && number >= 100 && facts.enter(i, i + 2, number / 100, number % 100);
}

bool seasonLetter(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    WordReader reader(name[i].word);
    const std::optional<int> season = reader.numberAfter({"s"_L1}, 4);
    // "DD5.1-S56" names a group.
    const bool isGroup = i + 1 == name.count() && i > facts.fileBegin && name.isJoinedBefore(i, u'-');
    if (!season || i == facts.titleBegin || isGroup)
        return false;
    // "S01D2" is a disc, "S01Extras" what it says.
    const bool isKnownEnd = reader.atEnd() || reader.take("extras"_L1) || reader.numberAfter({"d"_L1}, 2);
    return isKnownEnd && facts.enter(i, i + 1, season, std::nullopt);
}

/// "2", "2nd", "10º", "2ème".
std::optional<int> numberWithSuffix(const QString &word)
{
    WordReader reader(word);
    const std::optional<int> number = reader.number(2);
    reader.takeAny({"st"_L1, "nd"_L1, "rd"_L1, "th"_L1, "o"_L1, "a"_L1, "eme"_L1, "e"_L1});
    return reader.atEnd() || word.endsWith(u"ème"_s) ? number : std::nullopt;
}

bool seasonWordBefore(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (!isListed(name[i].word, WordList::Season))
        return false;
    const bool isBeforeEpisode = isListed(name[i + 2].word, WordList::Episode);
    // "Show Series III" is a title.
    const std::optional<int> season =
        name[i].word == "series"_L1 ? wholeNumber(name[i + 1].word, 2) : writtenNumber(name[i + 1].word);
    if (!season || name.isDividedBefore(i + 1) || name.gapBefore(i + 1).contains(u':'))
        return false;
    if (i == facts.titleBegin && !isBeforeEpisode && i + 2 < name.count())
        return false;
    // "2 season 12 episode": this number is the episode's.
    if (isBeforeEpisode && numberWithSuffix(name[i - 1].word))
        return false;
    return facts.enter(i, i + 2, season, std::nullopt);
}

/// "2nd Season", "3 сезон", "10ª Temporada". As all of a name or before an episode, no title need stand
/// before it.
bool seasonWordBehind(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (!isListed(name[i + 1].word, WordList::Season))
        return false;
    const bool isAll = i + 2 >= name.count() || numberWithSuffix(name[i + 2].word);
    const std::optional<int> season = numberWithSuffix(name[i].word);
    return season && (i != facts.titleBegin || isAll) && facts.enter(i, i + 2, season, std::nullopt);
}

/// "Temporada1", "Saison2".
bool seasonWordJoined(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const QString &word = name[i].word;
    qsizetype letters = word.size();
    while (letters > 0 && word[letters - 1] >= u'0' && word[letters - 1] <= u'9')
        --letters;
    const std::optional<int> season = wholeNumber(word.mid(letters), 2);
    return season && letters >= 4 && i != facts.titleBegin &&
           isListed(word.left(letters), WordList::Season) && facts.enter(i, i + 1, season, std::nullopt);
}

/// "第2季", "2期", "시즌2".
bool countedSeasonWord(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const std::optional<int> season = countedSeason(name[i].word);
    return season && i != facts.titleBegin && facts.enter(i, i + 1, season, std::nullopt);
}

constexpr NameRule TogetherRules[] = {
    {"Show.S01E02 · Show S01 E02 · Show s01-x02", seasonEpisode},
    {"Show.S01.E.02", spreadSeasonEpisode},
    {"Show 1x02", crossedNumbers},
    {"Show [Cap.102]", chapterWithSeason},
};

constexpr NameRule SeasonRules[] = {
    {"Show S01", seasonLetter},
    {"Show Season 1", seasonWordBefore},
    {"Show 1st Season", seasonWordBehind},
    {"Show Temporada1", seasonWordJoined},
    {"Show 第2季", countedSeasonWord},
};
} // namespace

std::span<const NameRule> seasonAndEpisodeRules()
{
    return TogetherRules;
}

std::span<const NameRule> seasonRules()
{
    return SeasonRules;
}
