#include "NameRules.h"

#include "WordReader.h"

using namespace Qt::StringLiterals;

namespace
{
std::optional<int> wholeNumber(const QString &word, qsizetype maxDigits)
{
    WordReader reader(word);
    const std::optional<int> number = reader.number(1, maxDigits);
    return reader.atEnd() ? number : std::nullopt;
}

bool enter(NameFacts &facts, qsizetype index, std::optional<int> season, std::optional<int> episode)
{
    facts.season = season;
    facts.episode = episode;
    facts.endTitleAt(index);
    return true;
}

/// "e02", "ep02" at the reader's place, whatever follows.
std::optional<int> episodeMark(WordReader &reader)
{
    if (reader.take("ep"_L1) || reader.take("e"_L1))
        return reader.number(1, 4);
    return std::nullopt;
}

bool seasonEpisodeInOneWord(const NameTokens &name, NameFacts &facts)
{
    for (qsizetype i = 0; i < name.count(); ++i) {
        WordReader reader(name[i].word);
        if (!reader.take("s"_L1))
            continue;
        const std::optional<int> season = reader.number(1, 4);
        const std::optional<int> episode = season ? episodeMark(reader) : std::nullopt;
        if (episode)
            return enter(facts, i, season, episode);
    }
    return false;
}

bool seasonThenEpisode(const NameTokens &name, NameFacts &facts)
{
    for (qsizetype i = 0; i + 1 < name.count(); ++i) {
        WordReader first(name[i].word);
        WordReader second(name[i + 1].word);
        if (!first.take("s"_L1))
            continue;
        const std::optional<int> season = first.number(1, 4);
        const std::optional<int> episode = season && first.atEnd() ? episodeMark(second) : std::nullopt;
        if (episode)
            return enter(facts, i, season, episode);
    }
    return false;
}

bool numbersWithCross(const NameTokens &name, NameFacts &facts)
{
    for (qsizetype i = 0; i < name.count(); ++i) {
        WordReader reader(name[i].word);
        const std::optional<int> season = reader.number(1, 2);
        if (!season || !reader.take("x"_L1))
            continue;
        if (const std::optional<int> episode = reader.number(2, 3))
            return enter(facts, i, season, episode);
    }
    return false;
}

bool seasonAlone(const NameTokens &name, NameFacts &facts)
{
    for (qsizetype i = 1; i < name.count(); ++i) {
        WordReader reader(name[i].word);
        const std::optional<int> season = reader.take("s"_L1) ? reader.number(1, 2) : std::nullopt;
        if (season && reader.atEnd())
            return enter(facts, i, season, std::nullopt);
        if (name[i].word == "season"_L1 && i + 1 < name.count()) {
            if (const std::optional<int> number = wholeNumber(name[i + 1].word, 2))
                return enter(facts, i, number, std::nullopt);
        }
    }
    return false;
}

bool episodeAlone(const NameTokens &name, NameFacts &facts)
{
    for (qsizetype i = 1; i < name.count(); ++i) {
        WordReader reader(name[i].word);
        const std::optional<int> episode = episodeMark(reader);
        if (episode && reader.atEnd())
            return enter(facts, i, std::nullopt, episode);
    }
    return false;
}

constexpr NameRule Rules[] = {
    {"Show.S01E02", seasonEpisodeInOneWord},
    {"Show.S01.E02", seasonThenEpisode},
    {"Show.1x02", numbersWithCross},
    {"Show.S01 · Show Season 1", seasonAlone},
    {"Show.E02", episodeAlone},
};
} // namespace

std::span<const NameRule> episodeRules()
{
    return Rules;
}
