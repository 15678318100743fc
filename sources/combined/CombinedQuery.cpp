#include "CombinedQuery.h"

#include <QLoggingCategory>

#include <algorithm>

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services", QtInfoMsg)
}

CombinedQuery::CombinedQuery(qsizetype sources, Asked asked, const QString &videoName,
                             const RankingPreferences &preferences)
    : m_answers(sources), m_asked(asked), m_videoName(videoName), m_preferences(preferences)
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

Result<QueryResult> CombinedQuery::outcome(const std::stop_token &stop) const
{
    const std::scoped_lock lock(m_mutex);
    QList<SubtitlePtr> rows;
    qint64 leftOut = 0;
    std::optional<base::Error> failure;
    for (const std::optional<Result<QueryResult>> &answer : m_answers) {
        if (!answer)
            continue;
        if (answer->hasValue()) {
            rows += answer->value().subtitles.value_or(QList<SubtitlePtr>());
            leftOut += answer->value().leftOut;
            continue;
        }
        qCWarning(log).noquote() << "a service failed:" << answer->error().localizedDescription
                                 << answer->error().detail;
        if (!failure)
            failure = answer->error();
    }
    const bool hasFirstAnswer = !m_answers.isEmpty() && m_answers.first() && m_answers.first()->hasValue();
    const bool mayGoOnToWords = m_asked == Asked::ByHash && hasFirstAnswer;
    if (rows.isEmpty() && failure && !mayGoOnToWords)
        return *failure;
    const BestRows best = BestRows::of(rows, m_videoName, m_preferences, stop);
    return QueryResult{best.subtitles, leftOut + best.leftOut};
}

std::optional<base::Error> CombinedQuery::failureOf(qsizetype source) const
{
    const std::scoped_lock lock(m_mutex);
    const std::optional<Result<QueryResult>> &answer = m_answers[source];
    return answer && !answer->hasValue() ? std::optional(answer->error()) : std::nullopt;
}
