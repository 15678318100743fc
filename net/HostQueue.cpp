#include "HostQueue.h"

#include <QHash>

#include <algorithm>
#include <deque>
#include <utility>

/// The used places of every host with requests.
struct HostQueue::Hosts
{
    struct Host
    {
        int taken = 0;
        std::deque<std::weak_ptr<Ticket>> waiting;
    };

    int placesAtAHost = 1;
    QHash<QString, Host> hosts;

    void letIn(const QString &name);
    void leave(const QString &name, bool wasInside);
};

struct HostQueue::Ticket
{
    std::weak_ptr<Hosts> hosts;
    QString host;
    std::function<void()> enter; // empty once called

    ~Ticket()
    {
        if (const auto all = hosts.lock())
            all->leave(host, !enter);
    }
};

void HostQueue::Hosts::letIn(const QString &name)
{
    while (true) {
        const auto host = hosts.find(name);
        if (host == hosts.end() || host->taken >= placesAtAHost || host->waiting.empty())
            return;
        const std::shared_ptr<Ticket> next = host->waiting.front().lock();
        host->waiting.pop_front();
        if (!next)
            continue;
        ++host->taken;
        std::exchange(next->enter, nullptr)();
    }
}

void HostQueue::Hosts::leave(const QString &name, bool wasInside)
{
    const auto host = hosts.find(name);
    if (host == hosts.end())
        return;
    host->taken -= wasInside ? 1 : 0;
    std::erase_if(host->waiting, [](const std::weak_ptr<Ticket> &ticket) { return ticket.expired(); });
    if (host->taken == 0 && host->waiting.empty())
        hosts.erase(host);
    else
        letIn(name);
}

HostQueue::HostQueue(int placesAtAHost) : m_hosts(std::make_shared<Hosts>())
{
    m_hosts->placesAtAHost = placesAtAHost;
}

HostQueue::~HostQueue() = default;

HostQueue::Place HostQueue::wait(const QUrl &url, std::function<void()> enter)
{
    const QUrl origin = url.adjusted(QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment);
    const auto ticket = std::make_shared<Ticket>(Ticket{m_hosts, origin.toString(), std::move(enter)});
    m_hosts->hosts[ticket->host].waiting.push_back(ticket);
    m_hosts->letIn(ticket->host);
    return ticket;
}
