#include "Transport.h"

#include "RetryPolicy.h"

#include <QLoggingCategory>
#include <QRandomGenerator>

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.net", QtInfoMsg)

constexpr int TooManyRequests = 429;
} // namespace

/// The requests that wait for the end of a pause, and the observer.
struct Transport::Pause
{
    int waiting = 0;
    PauseObserver observer;
};

/// Marks a request as waiting for the end of a pause while the mark exists.
struct Transport::PausedMark
{
    std::shared_ptr<Pause> pause;

    PausedMark(std::shared_ptr<Pause> itsPause, Clock::Duration length) : pause(std::move(itsPause))
    {
        if (++pause->waiting == 1 && pause->observer)
            pause->observer(length);
    }
    PausedMark(const PausedMark &) = delete;
    PausedMark &operator=(const PausedMark &) = delete;
    ~PausedMark()
    {
        if (--pause->waiting == 0 && pause->observer)
            pause->observer(std::nullopt);
    }
};

/// A request until its final answer.
struct Transport::RequestState
{
    HttpRequest request;
    HostRules rules;
    Completion completion;
    int tries = 0;
    Clock::Timer wait;
    RateQueue::Turn turn;
    HostQueue::Place place; // held from before the first attempt until the request has ended
    Call call;              // destroyed before its place is given to another request
    std::shared_ptr<PausedMark> paused;
};

Transport::Transport(Clock &clock, ServiceName service, RateLimiter limiter)
    : m_clock(clock),
      m_service(service),
      m_rate(clock, std::move(limiter)),
      m_client(clock, service),
      m_jitter([] { return QRandomGenerator::global()->bounded(2.0) - 1.0; }),
      m_pause(std::make_shared<Pause>())
{
    m_client.setPace(m_rate);
}

Transport::~Transport() = default;

void Transport::setPauseObserver(PauseObserver observer)
{
    m_pause->observer = std::move(observer);
}

Transport::Call Transport::send(const HttpRequest &request, const HostRules &rules, Completion completion)
{
    auto state = std::make_shared<RequestState>();
    state->request = request;
    state->rules = rules;
    state->completion = std::move(completion);
    enqueue(state);
    return state;
}

void Transport::enqueue(const std::shared_ptr<RequestState> &state)
{
    state->place = m_queue.wait(state->request.url, [this, weak = std::weak_ptr(state)] {
        if (const auto held = weak.lock())
            waitForTheRate(held);
    });
}

/// Called after the wait at the host: a slot of the rate is for requests that can be sent.
void Transport::waitForTheRate(const std::shared_ptr<RequestState> &state)
{
    if (const auto refusal = longPause()) {
        fail(state, *refusal);
        return;
    }
    markAsPaused(state, m_rate.pauseLeft());
    state->turn = m_rate.wait([this, weak = std::weak_ptr(state)] {
        if (const auto held = weak.lock())
            attempt(held);
    });
}

void Transport::markAsPaused(const std::shared_ptr<RequestState> &state, Clock::Duration length)
{
    if (length > Clock::Duration::zero() && state->request.isAwaited && !state->paused)
        state->paused = std::make_shared<PausedMark>(m_pause, length);
}

/// Completes on a later turn, because the caller does not hold the call before this one returns.
void Transport::fail(const std::shared_ptr<RequestState> &state, const base::Error &error)
{
    state->place.reset();
    state->paused.reset();
    state->wait = m_clock.after(Clock::Duration::zero(), [weak = std::weak_ptr(state), error] {
        if (const auto held = weak.lock())
            held->completion(error);
    });
}

/// The error when the pause is longer than a request may wait.
std::optional<base::Error> Transport::longPause() const
{
    const Clock::Duration left = m_rate.pauseLeft();
    if (left <= RetryPolicy::MaxWait)
        return std::nullopt;
    const QDateTime date = m_clock.date();
    return pauseError(m_pauseKind, m_service, date.addDuration(left), date);
}

void Transport::attempt(const std::shared_ptr<RequestState> &state)
{
    if (const auto refusal = longPause()) {
        fail(state, *refusal);
        return;
    }
    state->paused.reset();
    ++state->tries;
    state->call = m_client.send(state->request, state->rules,
                                [this, weak = std::weak_ptr(state)](const Result<HttpAnswer> &outcome) {
                                    if (const auto held = weak.lock())
                                        finishAttempt(held, outcome);
                                });
}

void Transport::finishAttempt(const std::shared_ptr<RequestState> &state, const Result<HttpAnswer> &outcome)
{
    // The pause applies to other requests too, whether this one is retried or not.
    const auto pause = RetryPolicy::pauseAfter(outcome, m_clock.date());
    if (pause) {
        m_pauseKind = outcome->status == TooManyRequests ? ServiceFailure::TooManyRequests
                                                         : ServiceFailure::Unavailable;
        m_rate.pauseUntil(m_clock.now() + *pause);
    }
    if (const auto refusal = pause ? longPause() : std::nullopt) {
        fail(state, *refusal);
        m_rate.callAll();
        return;
    }
    const auto wait =
        RetryPolicy::waitBeforeNextTry(state->request, outcome, state->tries, m_jitter(), m_clock.date());
    if (!wait) {
        state->place.reset();
        state->completion(outcome);
        return;
    }
    if (pause)
        markAsPaused(state, *wait);
    qCInfo(log).noquote() << state->request.url.host() << "asked again in" << wait->count() << "ms";
    state->place.reset();
    state->wait = m_clock.after(*wait, [this, weak = std::weak_ptr(state)] {
        if (const auto held = weak.lock())
            enqueue(held);
    });
}
