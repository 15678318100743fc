#pragma once
#include <QStringList>
#include <optional>

/// What a typed text asks of the titles: the words, in ever more tolerant readings of them, and the facts it
/// names.
struct TitleQuery
{
    /// One way of reading the text; the first that finds a title is the one that counts.
    struct Reading
    {
        QStringList words;
        enum class Demand
        {
            AllWords,
            HalfOfThem
        } demand = Demand::AllWords;
        bool checksFacts = false;
    };

    QList<Reading> readings;
    std::optional<int> year;
    std::optional<int> season;
    std::optional<int> episode;
};

/// Reads "harbour lights", "Lights harb" or "Harbour.Lights.2019.1080p.BluRay.x264.mkv". Any thread.
TitleQuery titleQuery(const QString &text);

/// Whether the words of a text must be a title's words, or may be the beginnings of them.
enum class WordMatch
{
    Whole,
    Begun
};

/// The full-text expression for a reading.
QString matchExpression(const TitleQuery::Reading &reading, WordMatch match);

/// The expression for the words side by side in their order: all of them, or any two neighbours where half of
/// them will do. The last may be only begun.
QString phraseExpression(const TitleQuery::Reading &reading, WordMatch match);

/// How a title answers a reading.
struct TitleAnswer
{
    int closeness = 0; // 0 when words were completed or left over, 1 when it has every word, 2 when no other
    int letters = 0;   // of the reading's words that it has: the words that say little are short
};

/// Nothing when too few words are there.
std::optional<TitleAnswer> titleAnswer(const TitleQuery::Reading &reading, const QString &title);
