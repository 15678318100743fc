#pragma once
#include <base/WorkerThread.h>
#include <net/DiskCache.h>
#include <net/RequestQueue.h>

/// Fetches an answer or takes it from the disk: keeps answers as long as the server and the question allow,
/// revalidates them afterwards, and uses a stale one when the server fails or sends an invalid answer. Main
/// thread only; the worker reads and writes files.
class CachedFetch final
{
public:
    struct Question
    {
        HttpRequest request;
        HostRules rules;
        QString key;                            // of the answer, without secrets
        std::chrono::seconds life{0};           // when the server names none
        std::chrono::seconds longestLife{0};    // the upper limit
        bool (*isGood)(const QByteArray &body); // on the worker; only good answers are kept or used
    };
    using Completion = std::function<void(Result<QByteArray>)>;
    using Call = std::shared_ptr<void>;

    CachedFetch(RequestQueue &queue, WorkerThread &worker, const DiskCache &cache)
        : m_queue(queue), m_worker(worker), m_cache(cache)
    {
    }

    /// The completion is called on a later turn, unless the call is released.
    [[nodiscard]] Call fetch(const Question &question, Completion completion);

private:
    class Fetch;

    RequestQueue &m_queue;
    WorkerThread &m_worker;
    const DiskCache m_cache;
};
