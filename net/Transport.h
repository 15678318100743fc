#pragma once
#include "HostQueue.h"
#include "HttpClient.h"
#include "RateQueue.h"

#include <list>

/// The one way to a service's servers: every request waits until fewer than ConnectionsAtAHost are under way
/// at its host, then for its place in the rate, and a question that failed for a passing reason is asked
/// again. No limit of time runs before a request leaves. A server that wants a longer pause than anybody
/// waits for is not asked before its end: requests fail with the time. Main thread only.
class Transport final
{
public:
    using Completion = HttpClient::Completion;
    using Call = HttpClient::Call;

    /// As many as the toolkit opens. A seventh would wait inside it, where our limit for making a connection
    /// would end it though nobody had tried to make one.
    static constexpr int ConnectionsAtAHost = 6;

    Transport(Clock &clock, ServiceName service, RateLimiter limiter);
    ~Transport();

    [[nodiscard]] Call send(const HttpRequest &request, const HostRules &rules, Completion completion);

    /// Called with the length of a pause when a request begins to wait for its end because the server gets
    /// too many, and with nothing once none waits any more. Set it before the first request.
    using PauseObserver = std::function<void(std::optional<Clock::Duration>)>;
    void setPauseObserver(PauseObserver observer);

    Clock &clock() { return m_clock; }
    ServiceName service() const { return m_service; }
    /// Between -1 and 1, spreads the retries of many machines; replaced by tests.
    void setJitter(std::function<double()> jitter) { m_jitter = std::move(jitter); }

private:
    struct RequestState;
    struct Pause;
    struct PausedMark;
    void enqueue(const std::shared_ptr<RequestState> &state);
    void waitForTheRate(const std::shared_ptr<RequestState> &state);
    void attempt(const std::shared_ptr<RequestState> &state);
    void fail(const std::shared_ptr<RequestState> &state, const Error &error);
    std::optional<Error> longPause() const;
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
