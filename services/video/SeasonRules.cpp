#include "NameRules.h"
#include "RuleWords.h"
#include "WordReader.h"

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MaxEpisodeDigits = 5;

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
    const std::optional<int> season = reader.take("s"_L1) ? reader.number(1, 4) : std::nullopt;
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
    if (i == facts.titleBegin || isFrameSize || !isPlausible || !reader.take("x"_L1))
        return false;
    const std::optional<int> episode = reader.number(1, 3);
    const bool isWholeSeason = reader.take("all"_L1);
    const bool isRange = reader.take("x"_L1) && reader.number(1, 3);
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
    if (!season || i == facts.titleBegin)
        return false;
    // "S01D2" is a disc, "S01Extras" what it says.
    const bool isKnownEnd =
        reader.atEnd() || reader.take("extras"_L1) || (reader.take("d"_L1) && reader.number(1, 2));
    if (!isKnownEnd)
        return false;
    facts.enter(i, i + 1, season, std::nullopt);
    return true;
}

bool seasonWordBefore(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (!isSeasonWord(name[i].word) || i + 1 >= name.count() || i == facts.titleBegin)
        return false;
    const std::optional<int> season = wholeNumber(name[i + 1].word, 2);
    if (!season || name.isDividedBefore(i + 1) || name.gapBefore(i + 1).contains(u':'))
        return false;
    facts.enter(i, i + 2, season, std::nullopt);
    return true;
}

/// "2nd Season", "3 сезон".
bool seasonWordBehind(const NameTokens &name, qsizetype i, NameFacts &facts)
{
    if (i == facts.titleBegin || i + 1 >= name.count() || !isSeasonWord(name[i + 1].word))
        return false;
    WordReader reader(name[i].word);
    const std::optional<int> season = reader.number(1, 2);
    reader.take("st"_L1) || reader.take("nd"_L1) || reader.take("rd"_L1) || reader.take("th"_L1);
    if (!season || !reader.atEnd())
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
