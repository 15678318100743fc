#pragma once
#include <QtGlobal>
#include <functional>
#include <mutex>
#include <unordered_set>

/// The queries that wait for an answer. Each is answered at most once, and never after `cancelAll` has
/// returned. Any thread.
class OutstandingQueries final
{
public:
    /// A new query's number.
    quint64 begin();
    bool isOutstanding(quint64 query) const;
    /// Runs `answer` and removes the query, unless it was answered or cancelled before. The answer may cancel
    /// queries itself.
    void finish(quint64 query, const std::function<void()> &answer);
    /// Drops every query. Waits for an answer that runs on another thread.
    void cancelAll();

private:
    // Held while an answer runs, so that a cancel never returns between the check and the call. Taken before
    // m_mutex.
    std::recursive_mutex m_answering;
    mutable std::mutex m_mutex; // guards the two below
    std::unordered_set<quint64> m_outstanding;
    quint64 m_last = 0;
};
