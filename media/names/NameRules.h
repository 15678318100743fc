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

    /// Stores the facts in the words from `index` up to `end`, where the title ends. Returns true, so that a
    /// rule can end with it.
    bool enter(qsizetype index, qsizetype end, std::optional<int> newSeason, std::optional<int> newEpisode)
    {
        season = newSeason ? newSeason : season;
        episode = newEpisode ? newEpisode : episode;
        endTitleAt(index);
        factsEnd = std::max(factsEnd, end);
        return true;
    }
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

// The steps around the rules, in their order.

/// Finds the beginning of the title after the group's brackets, the site's name or a running number. Stores
/// the title's first word and, for a name that consists of brackets, also its end.
void skipLeadIn(const NameTokens &name, NameFacts &facts);
/// Stores the year and ends the title before it: a year alone in brackets, else the last one before the words
/// about the file. A year that opens the title is part of it. Dates end the title, too.
void findYear(const NameTokens &name, NameFacts &facts);
/// Ends the title at the words about the file, at the brackets around other facts, and before words for its
/// completeness or cut. Of a title in two scripts it takes the Latin one.
void findTitleEnd(const NameTokens &name, NameFacts &facts);
