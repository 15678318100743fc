#include "NameRules.h"
#include "RuleWords.h"
#include "WordReader.h"

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MaxEpisodeDigits = 5;

/// The season of a word that begins like "s01", or "t01" in the Spanish way, which counts only with an
/// episode behind it.
std::optional<int> markedSeason(WordReader &reader)
{
    return reader.take("s"_L1) || reader.take("t"_L1) ? reader.number(1, 4) : std::nullopt;
}

/// The number behind an episode's mark: "e02", "ep02", "xe02".
std::optional<int> markedEpisode(WordReader reader)
{
    const bool isCrossed = reader.take("x"_L1);
    const bool isMarked = reader.take("ep"_L1) || reader.take("e"_L1);
    return isCrossed || isMarked ? reader.number(1, MaxEpisodeDigits) : std::nullopt;
}

bool seasonEpisode(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    WordReader reader(name[i].word);
    const std::optional<int> season = markedSeason(reader);
    if (!season)
        return false;
    if (const std::optional<int> episode = markedEpisode(reader)) {
        facts.enter(i, i + 1, season, episode);
        return true;
    }
    // "S01 E02", "S01-x02"; and "S01EP(02", where the mark stands with the season.
    const bool marksEpisode = reader.take("ep"_L1) || reader.take("e"_L1);
    if (i + 1 >= name.count() || !reader.atEnd())
        return false;
    const QString &next = name[i + 1].word;
    const std::optional<int> episode = marksEpisode ? wholeNumber(next, 4) : markedEpisode(WordReader(next));
    if (!episode)
        return false;
    facts.enter(i, i + 2, season, episode);
    return true;
}

/// "S01.E.02"
bool spreadSeasonEpisode(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    WordReader reader(name[i].word);
    const std::optional<int> season = reader.take("s"_L1) ? reader.number(1, 4) : std::nullopt;
    if (!season || !reader.atEnd() || i + 2 >= name.count() || name[i + 1].word != "e"_L1)
        return false;
    const std::optional<int> episode = wholeNumber(name[i + 2].word, 4);
    if (!episode)
        return false;
    facts.enter(i, i + 3, season, episode);
    return true;
}

bool crossedNumbers(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    WordReader reader(name[i].word);
    const std::optional<int> season = reader.number(1, 4);
    const bool isPlausible = season && (*season < 100 || isYear(QString::number(*season)));
    const bool isFrameSize = name[i].kind.strength != WordStrength::None;
    if (isFrameSize || !isPlausible || !reader.take("x"_L1))
        return false;
    const std::optional<int> episode = reader.number(1, 3);
    // "5.1x2": so many sound channels. "2x4.Title" may be a title, "1x02.Title" is not.
    const bool isFraction =
        i > facts.titleBegin && name.gapBefore(i) == QStringView(u".") && wholeNumber(name[i - 1].word, 2);
    const bool isShort = name[i].word.size() < 4;
    if (isShort && (isFraction || i == facts.titleBegin))
        return false;
    const bool isWholeSeason = reader.take("all"_L1);
    // "2x05x06", "2x05a"
    const bool isRange =
        (reader.take("x"_L1) && reader.number(1, 3)) || reader.take("a"_L1) || reader.take("b"_L1);
    if ((!episode && !isWholeSeason) || !(reader.atEnd() || isRange))
        return false;
    facts.enter(i, i + 1, season, episode);
    return true;
}

/// "Cap.102" counts the season in its hundreds.
bool chapterWithSeason(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (name[i].word != "cap"_L1 || i + 1 >= name.count())
        return false;
    const std::optional<int> number = wholeNumber(name[i + 1].word, 4);
    if (!number || *number < 100)
        return false;
    facts.enter(i, i + 2, *number / 100, *number % 100);
    return true;
}

bool seasonLetter(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    WordReader reader(name[i].word);
    const std::optional<int> season = reader.take("s"_L1) ? reader.number(1, 4) : std::nullopt;
    // "DD5.1-S56" names a group.
    const bool isGroup =
        i + 1 == name.count() && i > facts.fileBegin && name.gapBefore(i) == QStringView(u"-");
    if (!season || i == facts.titleBegin || isGroup)
        return false;
    // "S01D2" is a disc, "S01Extras" what it says.
    const bool isKnownEnd =
        reader.atEnd() || reader.take("extras"_L1) || (reader.take("d"_L1) && reader.number(1, 2));
    if (!isKnownEnd)
        return false;
    facts.enter(i, i + 1, season, std::nullopt);
    return true;
}

/// "2", "2nd", "10º", "2ème".
std::optional<int> numberWithSuffix(const QString &word)
{
    WordReader reader(word);
    const std::optional<int> number = reader.number(1, 2);
    for (const QLatin1StringView suffix :
         {"st"_L1, "nd"_L1, "rd"_L1, "th"_L1, "o"_L1, "a"_L1, "eme"_L1, "e"_L1}) {
        if (reader.take(suffix))
            break;
    }
    return reader.atEnd() || word.endsWith(u"ème"_s) ? number : std::nullopt;
}

bool seasonWordBefore(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (!isSeasonWord(name[i].word) || i + 1 >= name.count())
        return false;
    const bool isBeforeEpisode = i + 2 < name.count() && isEpisodeWord(name[i + 2].word);
    // "Show Series III" is a title.
    const std::optional<int> season =
        name[i].word == "series"_L1 ? wholeNumber(name[i + 1].word, 2) : writtenNumber(name[i + 1].word);
    if (!season || name.isDividedBefore(i + 1) || name.gapBefore(i + 1).contains(u':'))
        return false;
    if (i == facts.titleBegin && !isBeforeEpisode && i + 2 < name.count())
        return false;
    // "2 season 12 episode": this number is the episode's.
    if (isBeforeEpisode && i > 0 && numberWithSuffix(name[i - 1].word))
        return false;
    facts.enter(i, i + 2, season, std::nullopt);
    return true;
}

/// "2nd Season", "3 сезон", "10ª Temporada". As all of a name or before an episode, no title need stand
/// before it.
bool seasonWordBehind(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (i + 1 >= name.count() || !isSeasonWord(name[i + 1].word))
        return false;
    const bool isAll = i + 2 >= name.count() || numberWithSuffix(name[i + 2].word);
    const std::optional<int> season = numberWithSuffix(name[i].word);
    if (!season || (i == facts.titleBegin && !isAll))
        return false;
    facts.enter(i, i + 2, season, std::nullopt);
    return true;
}

/// "Temporada1", "Saison2".
bool seasonWordJoined(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const QString &word = name[i].word;
    qsizetype letters = word.size();
    while (letters > 0 && word[letters - 1] >= u'0' && word[letters - 1] <= u'9')
        --letters;
    const std::optional<int> season = wholeNumber(word.mid(letters), 2);
    if (!season || letters < 4 || i == facts.titleBegin || !isSeasonWord(word.left(letters)))
        return false;
    facts.enter(i, i + 1, season, std::nullopt);
    return true;
}

/// "第2季", "2期", "시즌2".
bool countedSeasonWord(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    const std::optional<int> season = countedSeason(name[i].word);
    if (!season || i == facts.titleBegin)
        return false;
    facts.enter(i, i + 1, season, std::nullopt);
    return true;
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
