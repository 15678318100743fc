#include "CombinedQuery.h"

#include <services/ranking/Duplicates.h>

#include <QLoggingCategory>

#include <algorithm>

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services", QtInfoMsg)
}

CombinedQuery::CombinedQuery(qsizetype sources, const QString &videoName,
                             const RankingPreferences &preferences)
    : m_answers(sources), m_videoName(videoName), m_preferences(preferences)
{
}

bool CombinedQuery::take(qsizetype source, const Result<QueryResult> &answer)
{
    const std::scoped_lock lock(m_mutex);
    if (m_answers[source])
        return false;
    m_answers[source] = answer;
    return std::all_of(m_answers.cbegin(), m_answers.cend(), [](const auto &one) { return one.has_value(); });
}

Result<QueryResult> CombinedQuery::outcome() const
{
    const std::scoped_lock lock(m_mutex);
    QList<SubtitlePtr> rows;
    std::optional<Error> failure;
    for (const std::optional<Result<QueryResult>> &answer : m_answers) {
        if (!answer || answer->hasValue()) {
            rows += answer ? answer->value().subtitles.value_or(QList<SubtitlePtr>()) : QList<SubtitlePtr>();
            continue;
        }
        qCWarning(log).noquote() << "a service failed:" << answer->error().localizedDescription
                                 << answer->error().detail;
        if (!failure)
            failure = answer->error();
    }
    if (rows.isEmpty() && failure)
        return *failure;
    return QueryResult{ranked(withoutDuplicates(rows), m_videoName, m_preferences)};
}

std::optional<Error> CombinedQuery::failureOf(qsizetype source) const
{
    const std::scoped_lock lock(m_mutex);
    const std::optional<Result<QueryResult>> &answer = m_answers[source];
    return answer && !answer->hasValue() ? std::optional(answer->error()) : std::nullopt;
}
