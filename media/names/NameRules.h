#pragma once
#include "NameTokens.h"

#include <algorithm>
#include <optional>
#include <span>

/// The facts found in a name so far. Indexes count the name's words.
struct NameFacts
{
    std::optional<int> year;
    std::optional<int> season;
    std::optional<int> episode;
    qsizetype titleBegin = 0;
    qsizetype titleEnd = 0;  // the first word after the title
    qsizetype partEnd = 0;   // after "Part 2", which is not part of the title but searched for; 0 without one
    qsizetype factsEnd = 0;  // after the last word that named a season or an episode
    qsizetype fileBegin = 0; // the first word that is certainly about the file
    qsizetype dateBegin = 0; // the words of a date, whose numbers are taken
    qsizetype dateEnd = 0;
    bool startsWithGroup = false; // "[Group] Show - 01": such numbers count through all seasons

    bool isDate(qsizetype index) const { return index >= dateBegin && index < dateEnd; }
    void endTitleAt(qsizetype index) { titleEnd = std::min(titleEnd, index); }
    /// Stores the facts in the words from `index` up to `end`.
    void enter(qsizetype index, qsizetype end, std::optional<int> newSeason, std::optional<int> newEpisode);
};

/// One notation of a fact. Rules are in tables and tried in order; each is applied to the words once, from
/// the title's first word on, and looks only at a few neighbours.
struct NameRule
{
    const char *example;
    /// Stores the facts at this word and returns whether it recognised any.
    bool (*apply)(const NameTokens &name, qsizetype index, NameFacts &facts);
};

/// Season and episode written together; only the first rule that matches anywhere is used.
std::span<const NameRule> seasonAndEpisodeRules();
/// A season alone.
std::span<const NameRule> seasonRules();
/// An episode alone, marked as one by a word or sign.
std::span<const NameRule> episodeRules();
/// Season and episode as a marked pair of numbers.
std::span<const NameRule> pairRules();
/// Pairs of bare numbers, and running numbers before a title, used when nothing else matches.
std::span<const NameRule> barePairRules();
/// Bare numbers that can only be episodes.
std::span<const NameRule> numberRules();

/// Tries the rules of one table. Returns whether one matched.
bool applyFirst(std::span<const NameRule> rules, const NameTokens &name, NameFacts &facts);
