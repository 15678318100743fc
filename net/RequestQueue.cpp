#include "RequestQueue.h"

#include "RetryPolicy.h"
#include "WhileAlive.h"

#include <QLoggingCategory>
#include <QRandomGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.net", QtInfoMsg)

constexpr int TooManyRequests = 429;
constexpr Clock::Duration None = Clock::Duration::zero();
} // namespace

/// A request until its final answer, or until its caller releases it.
struct RequestQueue::Entry : std::enable_shared_from_this<Entry>
{
    enum class State
    {
        Waiting,    // for a place at its host and a slot of the rate
        Running,    // holds a place
        Redirected, // holds its place and waits for another slot
        Idle        // waits for its next try, or has ended
    };

    RequestQueue *queue = nullptr; // none once the queue is gone
    HttpRequest request;
    HostRules rules;
    HttpCompletion completion;
    State state = State::Waiting;
    int tries = 0;
    bool isPaused = false;
    HttpClient::Follow follow;  // set while redirected
    std::shared_ptr<void> step; // the running attempt, or the timer of the next step

    Entry(RequestQueue *itsQueue, const HttpRequest &itsRequest, const HostRules &itsRules,
          HttpCompletion itsCompletion)
        : queue(itsQueue), request(itsRequest), rules(itsRules), completion(std::move(itsCompletion))
    {
    }
    Entry(const Entry &) = delete;
    Entry &operator=(const Entry &) = delete;
    ~Entry()
    {
        if (queue)
            queue->remove(*this);
    }

    bool isQueued() const { return state == State::Waiting || state == State::Redirected; }
    bool holdsPlaceAt(const QUrl &origin) const
    {
        return (state == State::Running || state == State::Redirected) &&
               HostRules::originOf(request.url) == origin;
    }
};

RequestQueue::RequestQueue(Clock &clock, const Rate &rate)
    : m_clock(clock),
      m_rate(rate),
      m_client(clock),
      m_jitter([] { return QRandomGenerator::global()->bounded(2.0) - 1.0; })
{
}

RequestQueue::~RequestQueue()
{
    for (Entry *entry : m_entries)
        entry->queue = nullptr;
}

HttpCall RequestQueue::send(const HttpRequest &request, const HostRules &rules, HttpCompletion completion)
{
    const auto entry = std::make_shared<Entry>(this, request, rules, std::move(completion));
    enqueue(*entry);
    return entry;
}

/// Also called for a retry, which goes to the end of the queue.
void RequestQueue::enqueue(Entry &entry)
{
    std::erase(m_entries, &entry);
    m_entries.push_back(&entry);
    entry.state = Entry::State::Waiting;
    if (const auto refusal = longPause()) {
        fail(entry, *refusal);
        return;
    }
    setPaused(entry, m_pauseEnd - m_clock.now());
    sendDue();
}

void RequestQueue::remove(Entry &entry)
{
    setPaused(entry, None);
    std::erase(m_entries, &entry);
    schedule();
}

void RequestQueue::sendDue()
{
    while (waitForSlot() == None) {
        Entry *next = nextToSend();
        if (!next)
            break;
        begin(*next);
    }
    schedule();
}

void RequestQueue::schedule()
{
    m_next = nextToSend() ? m_clock.after(waitForSlot(), [this] { sendDue(); }) : nullptr;
}

/// The first request that needs only a slot: a slot is not wasted on one whose host is full.
RequestQueue::Entry *RequestQueue::nextToSend() const
{
    const auto needsOnlySlot = [this](const Entry *entry) {
        if (entry->state != Entry::State::Waiting)
            return entry->state == Entry::State::Redirected;
        const QUrl origin = HostRules::originOf(entry->request.url);
        return std::count_if(m_entries.begin(), m_entries.end(), [&](const Entry *other) {
                   return other->holdsPlaceAt(origin);
               }) < ConnectionsAtAHost;
    };
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), needsOnlySlot);
    return found == m_entries.end() ? nullptr : *found;
}

Clock::Duration RequestQueue::waitForSlot() const
{
    const Clock::Duration now = m_clock.now();
    Clock::Duration next = std::max(now, m_pauseEnd);
    if (m_sent.size() == m_rate.count)
        next = std::max(next, m_sent.front() + m_rate.span);
    return next - now;
}

void RequestQueue::begin(Entry &entry)
{
    m_sent.push_back(m_clock.now());
    if (m_sent.size() > m_rate.count)
        m_sent.pop_front();
    setPaused(entry, None);
    if (std::exchange(entry.state, Entry::State::Running) == Entry::State::Redirected) {
        std::exchange(entry.follow, nullptr)();
        return;
    }
    ++entry.tries;
    const std::shared_ptr<Entry> held = entry.shared_from_this();
    const auto arrive = [this](const std::shared_ptr<Entry> &sent, const HttpResult &outcome) {
        finish(*sent, outcome);
    };
    const auto redirect = [this](const std::shared_ptr<Entry> &sent, const HttpClient::Follow &follow) {
        if (const auto refusal = longPause()) {
            fail(*sent, *refusal);
            return;
        }
        sent->follow = follow;
        sent->state = Entry::State::Redirected;
        schedule();
    };
    entry.step =
        m_client.send(entry.request, entry.rules, whileAlive(held, arrive), whileAlive(held, redirect));
}

void RequestQueue::finish(Entry &entry, const HttpResult &outcome)
{
    entry.state = Entry::State::Idle;
    const QDateTime date = m_clock.date();
    // The pause applies to other requests too, whether this one is retried or not.
    const auto pause = RetryPolicy::pauseAfter(outcome, date);
    if (pause) {
        m_pauseKind = outcome->status == TooManyRequests ? ServiceFailure::TooManyRequests
                                                         : ServiceFailure::Unavailable;
        m_pauseEnd = std::max(m_pauseEnd, m_clock.now() + *pause);
    }
    if (const auto refusal = pause ? longPause() : std::nullopt) {
        fail(entry, *refusal);
        for (Entry *other : m_entries) {
            if (other->isQueued())
                fail(*other, *refusal);
        }
        schedule();
        return;
    }
    const auto wait = RetryPolicy::waitBeforeNextTry(entry.request, outcome, entry.tries, m_jitter(), date);
    if (wait) {
        qCInfo(log).noquote() << entry.request.url.host() << "asked again in" << wait->count() << "ms";
        setPaused(entry, pause ? *wait : None);
        entry.step = m_clock.after(
            *wait, whileAlive(entry.shared_from_this(), [this](const auto &held) { enqueue(*held); }));
    }
    schedule();
    if (!wait)
        entry.completion(outcome);
}

/// Completes on a later turn, because the caller does not hold the call before `send` returns.
void RequestQueue::fail(Entry &entry, const TransportFault &fault)
{
    entry.state = Entry::State::Idle;
    setPaused(entry, None);
    entry.step = m_clock.after(
        None, whileAlive(entry.shared_from_this(), [fault](const auto &held) { held->completion(fault); }));
}

/// The fault when the pause is longer than a request may wait.
std::optional<TransportFault> RequestQueue::longPause() const
{
    const Clock::Duration left = m_pauseEnd - m_clock.now();
    if (left <= RetryPolicy::MaxWait)
        return std::nullopt;
    const QDateTime date = m_clock.date();
    const QDateTime end = date.addDuration(left);
    return TransportFault{m_pauseKind, u"asked to wait until "_s + end.toString(Qt::ISODate),
                          TransportFault::Pause{date, end}};
}

void RequestQueue::setPaused(Entry &entry, Clock::Duration length)
{
    const bool isPaused = length > None && entry.request.isAwaited;
    if (std::exchange(entry.isPaused, isPaused) == isPaused)
        return;
    m_paused += isPaused ? 1 : -1;
    if (m_observer && m_paused == (isPaused ? 1 : 0))
        m_observer(isPaused ? std::optional(length) : std::nullopt);
}
