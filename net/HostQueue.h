#pragma once
#include <QUrl>
#include <functional>
#include <memory>

/// Who may ask a host now: so many at a time, the others in the order they came. Knows no time: nobody's
/// limits run while they wait. One thread.
class HostQueue final
{
public:
    /// Holding it keeps the place, or the wait for one; letting it go gives it to the next.
    using Place = std::shared_ptr<void>;

    explicit HostQueue(int placesAtAHost);
    ~HostQueue();

    /// Calls `enter` once there is a place at the host of `url`: at once, or when somebody lets theirs go.
    /// It should do no more than plan what comes next.
    [[nodiscard]] Place wait(const QUrl &url, std::function<void()> enter);

private:
    struct Ticket;
    struct Hosts;
    std::shared_ptr<Hosts> m_hosts; // what tickets that outlive us look for in vain
};
