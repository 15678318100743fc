#pragma once
#include <QUrl>
#include <functional>
#include <memory>

/// Limits the concurrent requests per host; further ones wait in FIFO order. Has no timers, so the time
/// limits of waiting requests do not run. One thread.
class HostQueue final
{
public:
    /// Holds a place or the wait for one. Its destructor gives the place to the next request.
    using Place = std::shared_ptr<void>;

    explicit HostQueue(int placesAtAHost);
    ~HostQueue();

    /// Calls `enter` when the host has a free place, possibly at once. `enter` should only schedule the next
    /// step.
    [[nodiscard]] Place wait(const QUrl &url, std::function<void()> enter);

private:
    struct Ticket;
    struct Hosts;
    std::shared_ptr<Hosts> m_hosts; // tickets that outlive this object hold it weakly
};
