#include "NameRules.h"

void NameFacts::enter(qsizetype index, qsizetype end, std::optional<int> newSeason,
                      std::optional<int> newEpisode)
{
    if (newSeason)
        season = newSeason;
    if (newEpisode)
        episode = newEpisode;
    endTitleAt(index);
    factsEnd = std::max(factsEnd, end);
}

bool applyFirst(std::span<const NameRule> rules, const NameTokens &name, NameFacts &facts)
{
    for (const NameRule &rule : rules) {
        for (qsizetype i = facts.titleBegin; i < name.count(); ++i) {
            if (rule.apply(name, i, facts))
                return true;
        }
    }
    return false;
}
