#include "Transport.h"

#include "RetryPolicy.h"

#include <QLoggingCategory>
#include <QRandomGenerator>

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.net", QtInfoMsg)
}

/// A request until its last answer.
struct Transport::Errand
{
    HttpRequest request;
    HostRules rules;
    Completion completion;
    int tries = 0;
    Clock::Timer wait;
    RateQueue::Turn turn;
    HostQueue::Place place; // from before it leaves until it has ended
    Call call;              // ends before its place is somebody else's
};

Transport::Transport(Clock &clock, ServiceName service, RateLimiter limiter)
    : m_clock(clock),
      m_service(service),
      m_rate(clock, std::move(limiter)),
      m_client(clock, service),
      m_jitter([] { return QRandomGenerator::global()->bounded(2.0) - 1.0; })
{
    m_client.setPace(m_rate);
}

Transport::~Transport() = default;

Transport::Call Transport::send(const HttpRequest &request, const HostRules &rules, Completion completion)
{
    auto errand = std::make_shared<Errand>();
    errand->request = request;
    errand->rules = rules;
    errand->completion = std::move(completion);
    enqueue(errand);
    return errand;
}

void Transport::enqueue(const std::shared_ptr<Errand> &errand)
{
    errand->place = m_queue.wait(errand->request.url, [this, weak = std::weak_ptr(errand)] {
        if (const auto held = weak.lock())
            waitForTheRate(held);
    });
}

/// After the wait at the host: places in the rate are for those who can take them.
void Transport::waitForTheRate(const std::shared_ptr<Errand> &errand)
{
    errand->turn = m_rate.wait([this, weak = std::weak_ptr(errand)] {
        if (const auto held = weak.lock())
            attempt(held);
    });
}

void Transport::attempt(const std::shared_ptr<Errand> &errand)
{
    ++errand->tries;
    errand->call = m_client.send(errand->request, errand->rules,
                                 [this, weak = std::weak_ptr(errand)](const Result<HttpAnswer> &outcome) {
                                     if (const auto held = weak.lock())
                                         finishAttempt(held, outcome);
                                 });
}

void Transport::finishAttempt(const std::shared_ptr<Errand> &errand, const Result<HttpAnswer> &outcome)
{
    // Others wait as well, whether this one is asked again or not.
    if (const auto pause = RetryPolicy::pauseAfter(outcome, m_clock.date()))
        m_rate.pauseUntil(m_clock.now() + *pause);
    const auto wait =
        RetryPolicy::waitBeforeNextTry(errand->request, outcome, errand->tries, m_jitter(), m_clock.date());
    if (!wait) {
        errand->place.reset();
        errand->completion(outcome);
        return;
    }
    qCInfo(log).noquote() << errand->request.url.host() << "asked again in" << wait->count() << "ms";
    errand->place.reset();
    errand->wait = m_clock.after(*wait, [this, weak = std::weak_ptr(errand)] {
        if (const auto held = weak.lock())
            enqueue(held);
    });
}
