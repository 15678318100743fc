#pragma once
#include "NameTokens.h"

#include <algorithm>
#include <optional>
#include <span>

/// What the rules have found out about a name so far. Indexes count the name's words.
struct NameFacts
{
    std::optional<int> year;
    std::optional<int> season;
    std::optional<int> episode;
    qsizetype titleBegin = 0;
    qsizetype titleEnd = 0;  // the first word that is not the title's any more
    qsizetype partEnd = 0;   // behind "Part 2", which is no title's but worth searching for; 0 without one
    qsizetype factsEnd = 0;  // behind the last word that named a season or an episode
    qsizetype fileBegin = 0; // the first word that is surely about the file
    qsizetype dateBegin = 0; // a date's words: these numbers are taken
    qsizetype dateEnd = 0;
    bool startsWithGroup = false; // "[Group] Show - 01": such numbers count through all seasons

    bool isDate(qsizetype index) const { return index >= dateBegin && index < dateEnd; }
    void endTitleAt(qsizetype index) { titleEnd = std::min(titleEnd, index); }
    /// Enters what the words from `index` up to `end` name.
    void enter(qsizetype index, qsizetype end, std::optional<int> newSeason, std::optional<int> newEpisode);
};

/// One way of writing a fact. Rules stand in tables and are tried in their order; each goes over the words
/// once, from the title's first on, and looks at no more than a few words around.
struct NameRule
{
    const char *example;
    /// Enters what it recognises at this word and says whether it did.
    bool (*apply)(const NameTokens &name, qsizetype index, NameFacts &facts);
};

/// Season and episode written together; the first rule that applies anywhere is the only one.
std::span<const NameRule> seasonAndEpisodeRules();
/// A season alone.
std::span<const NameRule> seasonRules();
/// An episode alone, marked as one by a word or sign.
std::span<const NameRule> episodeRules();
/// Season and episode as a pair of numbers that something marks.
std::span<const NameRule> pairRules();
/// Pairs of bare numbers, and running numbers before a title, where nothing else says anything.
std::span<const NameRule> barePairRules();
/// Bare numbers that can only be episodes.
std::span<const NameRule> numberRules();

/// Tries the rules of one table. True when one of them applied.
bool applyFirst(std::span<const NameRule> rules, const NameTokens &name, NameFacts &facts);
