#pragma once
#include "NameTokens.h"

#include <optional>
#include <span>

/// What the rules have found out about a name so far. Indexes count the name's words.
struct NameFacts
{
    std::optional<int> year;
    std::optional<int> season;
    std::optional<int> episode;
    qsizetype titleBegin = 0;
    qsizetype titleEnd = 0; // the first word that is not the title's any more

    void endTitleAt(qsizetype index) { titleEnd = std::min(titleEnd, index); }
};

/// One way of writing a fact. Rules stand in a table and are tried in its order; each looks at every word at
/// most once.
struct NameRule
{
    const char *example;
    /// Enters what it recognises and says whether it did.
    bool (*apply)(const NameTokens &name, NameFacts &facts);
};

/// Season and episode, from the surest way of writing them to the vaguest: the first that applies is the only
/// one.
std::span<const NameRule> episodeRules();
