#pragma once
#include <base/WorkerThread.h>
#include <net/DiskCache.h>
#include <net/Transport.h>

/// Asks, unless the answer is at hand: keeps what came on disk for as long as the server and we allow, asks
/// whether it has changed afterwards, and makes do with an old one when nobody answers, or with nonsense.
/// Main thread only; files are read and written on the worker.
class CachedFetch final
{
public:
    struct Question
    {
        HttpRequest request;
        HostRules rules;
        QString key;                                      // of the answer, without secrets
        std::chrono::seconds life{0};                     // where the server says nothing
        std::chrono::seconds longestLife{0};              // whatever it says
        bool (*isGood)(const QByteArray &body) = nullptr; // on the worker; only good answers are kept or used
    };
    using Completion = std::function<void(Result<QByteArray>)>;
    using Call = std::shared_ptr<void>;

    CachedFetch(Transport &transport, WorkerThread &worker, const DiskCache &cache);

    /// The completion comes on a later turn, unless the call is let go.
    [[nodiscard]] Call fetch(const Question &question, Completion completion);

private:
    struct RequestState;
    void ask(const std::shared_ptr<RequestState> &state);
    void arrive(const std::shared_ptr<RequestState> &state, const Result<HttpAnswer> &outcome);
    void store(const std::shared_ptr<RequestState> &state, const HttpAnswer &answer);

    Transport &m_transport;
    WorkerThread &m_worker;
    DiskCache m_cache;
};

/// How long an answer may be kept by its Cache-Control; nothing where it does not say.
std::optional<std::chrono::seconds> maxAgeOf(const HttpAnswer &answer);
