#pragma once
#include "HostQueue.h"
#include "HttpClient.h"
#include "RateQueue.h"

#include <list>

/// The one way to a service's servers: every request waits until fewer than ConnectionsAtAHost are under way
/// at its host, then for its place in the rate, and a question that failed for a passing reason is asked
/// again. No limit of time runs before a request leaves. Main thread only.
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

    Clock &clock() { return m_clock; }
    ServiceName service() const { return m_service; }
    /// Between -1 and 1, spreads the retries of many machines; replaced by tests.
    void setJitter(std::function<double()> jitter) { m_jitter = std::move(jitter); }

private:
    struct Errand;
    void enqueue(const std::shared_ptr<Errand> &errand);
    void waitForTheRate(const std::shared_ptr<Errand> &errand);
    void attempt(const std::shared_ptr<Errand> &errand);
    void finishAttempt(const std::shared_ptr<Errand> &errand, const Result<HttpAnswer> &outcome);

    Clock &m_clock;
    ServiceName m_service;
    RateQueue m_rate;
    HttpClient m_client;
    HostQueue m_queue{ConnectionsAtAHost};
    std::function<double()> m_jitter;
};
