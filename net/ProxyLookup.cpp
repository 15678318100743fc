#include "ProxyLookup.h"

#include "EnvironmentProxy.h"

#include <base/MainQueue.h>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr Clock::Duration LongestLookup = 10s;

/// The first proxy of a kind that Qt supports.
QNetworkProxy usable(const std::optional<QStringList> &addresses)
{
    for (const QString &address : addresses.value_or(QStringList())) {
        if (address.startsWith("direct:"_L1))
            return QNetworkProxy::NoProxy;
        if (address.startsWith("http:"_L1) || address.startsWith("socks"_L1))
            return EnvironmentProxy::proxyFromText(address);
    }
    return EnvironmentProxy::refusingProxy();
}
} // namespace

std::shared_ptr<ProxyLookup> ProxyLookup::start(Clock &clock, const QUrl &url, Completion completion,
                                                _GProxyResolver *resolver)
{
    const std::shared_ptr<ProxyLookup> lookup(new ProxyLookup(std::move(completion), resolver));
    lookup->begin(clock, url);
    return lookup;
}

ProxyLookup::ProxyLookup(Completion completion, _GProxyResolver *resolver)
    : m_completion(std::move(completion)), m_desktop(resolver)
{
}

ProxyLookup::~ProxyLookup()
{
    m_desktop.cancel();
    if (m_thread.joinable())
        m_thread.join();
}

void ProxyLookup::begin(Clock &clock, const QUrl &url)
{
    // A PAC script gets only the origin of the address.
    const QUrl origin = url.adjusted(QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment);
    m_thread = std::thread([this, origin, weak = weak_from_this()] {
        MainQueue::shared().async([weak, proxy = usable(m_desktop.lookUp(origin))] {
            if (const auto self = weak.lock())
                self->finish(proxy);
        });
    });
    m_limit = clock.after(LongestLookup, [this] { finish(EnvironmentProxy::refusingProxy()); });
}

void ProxyLookup::finish(const QNetworkProxy &proxy)
{
    m_limit.cancel();
    if (const Completion completion = std::exchange(m_completion, nullptr))
        completion(proxy);
}
