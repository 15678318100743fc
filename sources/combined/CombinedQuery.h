#pragma once
#include "Ranking.h"

#include <model/SubtitleService.h>

#include <mutex>

/// The answers of several services to one query, until all are there. Any thread.
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

    /// True for the last of them: `outcome` is then ready.
    bool take(qsizetype source, const Result<QueryResult> &answer);
    /// Rows of any service make the others' failures none. Without rows any failure is the answer, unless the
    /// first service (the one on this machine) answered a query by hash: that gives an empty list, for the
    /// words of the file's name may still find something there. What matches the hash comes first, each
    /// subtitle once. Ends early once it is asked to stop, and what it gives then is of no use.
    Result<QueryResult> outcome(const std::stop_token &stop = {}) const;
    /// How that source failed, if it did.
    std::optional<Error> failureOf(qsizetype source) const;

private:
    mutable std::mutex m_mutex; // guards the answers
    QList<std::optional<Result<QueryResult>>> m_answers;
    const Asked m_asked;
    const QString m_videoName;
    const RankingPreferences m_preferences;
};
