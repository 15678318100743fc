#pragma once
#include "HostQueue.h"
#include "HttpClient.h"
#include "RateQueue.h"

#include <list>

/// Sends all requests of a service: each waits until fewer than ConnectionsAtAHost are running at its host,
/// then for a slot of the rate, and is retried after a passing failure if that is safe. Timeouts start when a
/// request is sent. When a server asks for a pause that is too long to wait for, requests fail with its end
/// time until it is over. Main thread only.
class Transport final
{
public:
    using Completion = HttpClient::Completion;
    using Call = HttpClient::Call;

    /// Qt opens six connections per host. A seventh request would wait inside Qt and hit our connection
    /// timeout without a connection attempt.
    static constexpr int ConnectionsAtAHost = 6;

    Transport(Clock &clock, ServiceName service, RateLimiter limiter);
    ~Transport();

    [[nodiscard]] Call send(const HttpRequest &request, const HostRules &rules, Completion completion);

    /// Called with the length of a pause when a request begins to wait for it because of a rate refusal, and
    /// with none once no request waits. Set it before the first request.
    using PauseObserver = std::function<void(std::optional<Clock::Duration>)>;
    void setPauseObserver(PauseObserver observer);

    Clock &clock() { return m_clock; }
    ServiceName service() const { return m_service; }
    /// Gives a value between -1 and 1 that spreads the retries of many machines; tests replace it.
    void setJitter(std::function<double()> jitter) { m_jitter = std::move(jitter); }

private:
    struct RequestState;
    struct Pause;
    struct PausedMark;
    void enqueue(const std::shared_ptr<RequestState> &state);
    void waitForTheRate(const std::shared_ptr<RequestState> &state);
    void attempt(const std::shared_ptr<RequestState> &state);
    void fail(const std::shared_ptr<RequestState> &state, const base::Error &error);
    std::optional<base::Error> longPause() const;
    void markAsPaused(const std::shared_ptr<RequestState> &state, Clock::Duration length);
    void finishAttempt(const std::shared_ptr<RequestState> &state, const Result<HttpAnswer> &outcome);

    Clock &m_clock;
    ServiceName m_service;
    RateQueue m_rate;
    HttpClient m_client;
    HostQueue m_queue{ConnectionsAtAHost};
    std::function<double()> m_jitter;
    ServiceFailure m_pauseKind = ServiceFailure::TooManyRequests; // why the server asked for the last pause
    std::shared_ptr<Pause> m_pause;
};
