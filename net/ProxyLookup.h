#pragma once
#include "Clock.h"

#include <base/DesktopProxies.h>

#include <QNetworkProxy>
#include <QUrl>
#include <memory>
#include <thread>

/// Asks the desktop for the proxy of an address, on a thread of its own because the answer may take time. One
/// that cannot be learnt in time is one that refuses: the person may not want to go without. Letting it go
/// ends it. Main thread only.
class ProxyLookup final : public std::enable_shared_from_this<ProxyLookup>
{
public:
    using Completion = std::function<void(const QNetworkProxy &)>;

    /// Completes on a later turn. `resolver` is the desktop's unless another is given.
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
