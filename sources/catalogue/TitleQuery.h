#pragma once
#include <QStringList>
#include <optional>

/// A typed text as a query for titles: its words in increasingly tolerant readings, and the facts it names.
struct TitleQuery
{
    /// One interpretation of the text; the first one that finds a title is used.
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

/// Whether the words of a text must be whole words of a title or may be prefixes.
enum class WordMatch
{
    Whole,
    Begun
};

/// The full-text expression of a reading.
QString matchExpression(const TitleQuery::Reading &reading, WordMatch match);

/// The expression for words side by side in their order: all of them, or any two neighbours if half of the
/// words suffice. The last word may be a prefix.
QString phraseExpression(const TitleQuery::Reading &reading, WordMatch match);

/// How well a title matches a reading.
struct TitleAnswer
{
    int closeness = 0; // 0: words were completed or left over; 1: it has every word; 2: and no others
    int letters = 0;   // the total length of the matched words, since short words say little
};

/// None when too few words match.
std::optional<TitleAnswer> titleAnswer(const TitleQuery::Reading &reading, const QString &title);
