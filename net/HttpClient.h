#pragma once
#include "HostRules.h"
#include "HttpExchange.h"
#include "ProxyLookup.h"
#include "RateQueue.h"

#include <QNetworkAccessManager>

/// Sends requests to the servers of one service. Checks each address against the rules, follows redirects
/// itself (GET only, at most three, never to another host), uses the proxy of the environment or the desktop,
/// and sends "Plovendix v…" as the user agent. Connections are kept alive, but not across a suspend. Does not
/// retry or limit the rate. Main thread only.
class HttpClient final
{
public:
    using Completion = HttpExchange::Completion;
    /// Holds a running request. Its destructor cancels the request without calling the completion.
    using Call = std::shared_ptr<void>;

    /// Uses the desktop's resolver unless another one is given, which must outlive this object.
    HttpClient(Clock &clock, ServiceName service, _GProxyResolver *resolver = nullptr);

    [[nodiscard]] Call send(const HttpRequest &request, const HostRules &rules, Completion completion);
    /// The rate queue for redirects, because a server counts each as a request. Must outlive this object.
    void setPace(RateQueue &pace) { m_pace = &pace; }

    /// The user agent of every request: the program's name and version, digits and dots only.
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
    base::Error forbidden(const QUrl &url) const;
    Result<QUrl> nextAddress(const RedirectChain &chain, const HttpAnswer &answer) const;

    Clock &m_clock;
    ServiceName m_service;
    _GProxyResolver *m_resolver;
    const std::shared_ptr<ProxyTable> m_proxies = std::make_shared<ProxyTable>();
    std::shared_ptr<QNetworkAccessManager> m_network;
    Clock::Duration m_dateAhead{0}; // of the monotonic clock, which stops during a suspend
    RateQueue *m_pace = nullptr;
};
