#pragma once
#include "HttpClient.h"

#include <deque>

/// Sends all requests of a service, first in, first out. A request waits until fewer than ConnectionsAtAHost
/// are running at its host and the rate has a slot; a redirect takes a slot, too. Cancelled requests use no
/// slot. Passing failures are retried if that is safe. While a server asks for a pause, requests wait; while
/// a longer pause lasts, requests fail at once; the fault says when it ends. Main thread only.
class RequestQueue final
{
public:
    /// Qt opens six connections per host. A seventh request would wait inside Qt, and its time limits would
    /// run without a connection.
    static constexpr int ConnectionsAtAHost = 6;

    /// At most `count` requests are sent in any `span` of time.
    struct Rate
    {
        std::size_t count = 1;
        Clock::Duration span{0};
    };

    RequestQueue(Clock &clock, const Rate &rate);
    ~RequestQueue();
    RequestQueue(const RequestQueue &) = delete;
    RequestQueue &operator=(const RequestQueue &) = delete;

    /// Sends the request at once if it need not wait. Completes on a later turn.
    [[nodiscard]] HttpCall send(const HttpRequest &request, const HostRules &rules,
                                HttpCompletion completion);

    /// Called with the length of a pause when an awaited request begins to wait for it, and with none once no
    /// request waits. Set it before the first request.
    using PauseObserver = std::function<void(std::optional<Clock::Duration>)>;
    void setPauseObserver(PauseObserver observer) { m_observer = std::move(observer); }

    Clock &clock() { return m_clock; }
    /// Gives a value between -1 and 1 that spreads the retries of many machines; tests replace it.
    void setJitter(std::function<double()> jitter) { m_jitter = std::move(jitter); }

private:
    struct Entry;
    void enqueue(Entry &entry);
    void remove(Entry &entry);
    void sendDue();
    void schedule();
    Entry *nextToSend() const;
    Clock::Duration waitForSlot() const;
    void begin(Entry &entry);
    void finish(Entry &entry, const HttpResult &outcome);
    void fail(Entry &entry, const TransportFault &fault);
    std::optional<TransportFault> longPause() const;
    void setPaused(Entry &entry, Clock::Duration length);

    Clock &m_clock;
    const Rate m_rate;
    HttpClient m_client;
    std::function<double()> m_jitter;
    PauseObserver m_observer;
    int m_paused = 0;                   // the number of awaited requests that wait for the end of a pause
    std::vector<Entry *> m_entries;     // in the order of sending; owned by their calls
    std::deque<Clock::Duration> m_sent; // the times of the last requests within the rate, the oldest first
    Clock::Duration m_pauseEnd{0};
    ServiceFailure m_pauseKind = ServiceFailure::TooManyRequests; // why the server asked for the last pause
    Clock::Timer m_next;                                          // for the next slot
};
