#pragma once
#include "Ranking.h"

#include <model/SubtitleService.h>

#include <mutex>

/// Collects the answers of several services to one query. Any thread.
class CombinedQuery final
{
public:
    enum class Asked
    {
        ByHash,
        ByWords
    };

    CombinedQuery(qsizetype sources, Asked asked, const QString &videoName,
                  const RankingPreferences &preferences);

    /// Returns true for the last answer: `outcome` is then ready.
    bool take(qsizetype source, const Result<QueryResult> &answer);
    /// Fails only if no source returned rows, and not even then if the first service (the one on this
    /// machine) answered a query by hash: an empty list lets the words of the file's name be tried. Rows that
    /// match the hash come first, each subtitle once. Stops early on request; the result is then useless.
    Result<QueryResult> outcome(const std::stop_token &stop = {}) const;
    /// The failure of that source, if any.
    std::optional<base::Error> failureOf(qsizetype source) const;

private:
    mutable std::mutex m_mutex; // guards the answers
    QList<std::optional<Result<QueryResult>>> m_answers;
    const Asked m_asked;
    const QString m_videoName;
    const RankingPreferences m_preferences;
};
