#pragma once
#include "Clock.h"

#include <base/DesktopProxies.h>

#include <QNetworkProxy>
#include <QUrl>
#include <thread>

/// The proxy for an address that the environment names (https_proxy, http_proxy, all_proxy, no_proxy; lower
/// or upper case, read on each call); none when it names none. An unreadable value gives a refusing proxy.
/// Loopback addresses never use a proxy. Any thread.
std::optional<QNetworkProxy> environmentProxy(const QUrl &url);
/// A proxy that refuses every connection. It replaces one that cannot be determined, because a person who
/// names a proxy does not want direct connections. Any thread.
QNetworkProxy refusingProxy();

/// Asks the desktop for the proxy of an address on a thread, because the answer may take time. A lookup that
/// times out gives a refusing proxy. Releasing the lookup cancels it. Main thread only.
class ProxyLookup final
{
public:
    using Completion = std::function<void(const QNetworkProxy &)>;

    /// Completes on a later turn. Uses the desktop's resolver unless another one is given.
    [[nodiscard]] static std::shared_ptr<ProxyLookup>
    start(Clock &clock, const QUrl &url, Completion completion, _GProxyResolver *resolver = nullptr);
    ~ProxyLookup();
    ProxyLookup(const ProxyLookup &) = delete;
    ProxyLookup &operator=(const ProxyLookup &) = delete;

private:
    ProxyLookup(Completion completion, _GProxyResolver *resolver);
    void finish(const QNetworkProxy &proxy);

    Completion m_completion; // empty once called
    DesktopProxies m_desktop;
    Clock::Timer m_limit;
    std::thread m_thread;
};
