#pragma once
#include <search/api/SubtitleService.h>
#include <services/ranking/Ranking.h>

#include <mutex>

/// The answers of several services to one query, until all are there. Any thread.
class CombinedQuery final
{
public:
    CombinedQuery(qsizetype sources, const QString &videoName, const RankingPreferences &preferences);

    /// True for the last of them: `outcome` is then ready.
    bool take(qsizetype source, const Result<QueryResult> &answer);
    /// Rows of any service make the others' failures none; without rows any failure is the answer. What
    /// matches the hash comes first, each subtitle once.
    Result<QueryResult> outcome() const;
    /// How that source failed, if it did.
    std::optional<Error> failureOf(qsizetype source) const;

private:
    mutable std::mutex m_mutex; // guards the answers
    QList<std::optional<Result<QueryResult>>> m_answers;
    const QString m_videoName;
    const RankingPreferences m_preferences;
};
