#pragma once
#include <model/Query.h>
#include <stop_token>

/// The person's preference for a kind of subtitles.
enum class Preference
{
    Neutral,
    Preferred,
    Avoided
};

/// "preferred" and "avoided"; any other text is neutral.
Preference preferenceFromText(const QString &text);

struct RankingPreferences
{
    Preference hearingImpaired = Preference::Neutral;
    Preference foreignPartsOnly = Preference::Avoided;
    Preference machineTranslated = Preference::Avoided;

    bool operator==(const RankingPreferences &) const = default;
};

/// The best first: those that match the file's hash, then by the person's preferences, by how well the
/// release and its frame rate agree with the video's own name (which may be empty), trusted ones, and by
/// downloads. Equal ones keep their order. Ends early once it is asked to stop, and what it gives then is of
/// no use. Any thread.
QList<SubtitlePtr> ranked(const QList<SubtitlePtr> &subtitles, const QString &videoName,
                          const RankingPreferences &preferences, const std::stop_token &stop = {});

/// Removes duplicates. Within one service a file is identified by its id. Files of two services are the same
/// when release, language and marks agree, each having at most one partner; the one that matches the video's
/// hash is kept, otherwise the earlier. Linear time; stops early on request, and the result is then useless.
/// Any thread.
QList<SubtitlePtr> withoutDuplicates(const QList<SubtitlePtr> &subtitles, const std::stop_token &stop = {});

/// The answer to a search: each subtitle once, the best first, limited to the number that is useful to a
/// person.
QueryResult bestRows(const QList<SubtitlePtr> &found, const QString &videoName,
                     const RankingPreferences &preferences, const std::stop_token &stop = {});
