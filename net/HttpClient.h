#pragma once
#include "HostRules.h"
#include "HttpExchange.h"
#include "ProxyLookup.h"
#include "RateQueue.h"

#include <QNetworkAccessManager>

/// Asks servers of one service. Goes only where the rules let it, follows a redirect by hand (a GET, at most
/// three, never to another host), through the proxy that the environment or the desktop names, and says
/// "Plovendix v…" everywhere. Keeps connections, but none from before the machine slept. No retries, no rate
/// of its own. Main thread only.
class HttpClient final
{
public:
    using Completion = HttpExchange::Completion;
    /// Holding it keeps the request going; letting it go drops the request without a word.
    using Call = std::shared_ptr<void>;

    /// `resolver` is the desktop's unless another is given; it outlives us.
    HttpClient(Clock &clock, ServiceName service, _GProxyResolver *resolver = nullptr);

    [[nodiscard]] Call send(const HttpRequest &request, const HostRules &rules, Completion completion);
    /// Where a redirect waits before it is followed: to the server it is one more request. Outlives us.
    void setPace(RateQueue &pace) { m_pace = &pace; }

    /// What every request calls us: the program's name and version, digits and dots only.
    static QByteArray userAgent();

private:
    struct RedirectChain;
    class LearntProxies;
    using ProxyTable = QHash<QString, QNetworkProxy>; // by origin
    std::shared_ptr<QNetworkAccessManager> newNetwork() const;
    void renewAfterSleep();
    void step(const std::shared_ptr<RedirectChain> &chain);
    void begin(const std::shared_ptr<RedirectChain> &chain, const QNetworkProxy &proxy);
    void follow(const std::shared_ptr<RedirectChain> &chain, const QUrl &next);
    void arrive(const std::shared_ptr<RedirectChain> &chain, const Result<HttpAnswer> &outcome);
    Error forbidden(const QUrl &url) const;
    Result<QUrl> nextAddress(const RedirectChain &chain, const HttpAnswer &answer) const;

    Clock &m_clock;
    ServiceName m_service;
    _GProxyResolver *m_resolver;
    const std::shared_ptr<ProxyTable> m_proxies = std::make_shared<ProxyTable>();
    std::shared_ptr<QNetworkAccessManager> m_network;
    Clock::Duration m_dateAhead{0}; // of the clock that stands still while the machine sleeps
    RateQueue *m_pace = nullptr;
};
