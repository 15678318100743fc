#pragma once
#include "Clock.h"

#include <base/DesktopProxies.h>

#include <QNetworkProxy>
#include <QUrl>
#include <memory>
#include <thread>

/// Asks the desktop for the proxy of an address on a thread, because the answer may take time. A lookup that
/// times out gives a refusing proxy, since the person may not want direct connections. Releasing the lookup
/// cancels it. Main thread only.
class ProxyLookup final : public std::enable_shared_from_this<ProxyLookup>
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
    void begin(Clock &clock, const QUrl &url);
    void finish(const QNetworkProxy &proxy);

    Completion m_completion;
    DesktopProxies m_desktop;
    Clock::Timer m_limit;
    std::thread m_thread;
};
