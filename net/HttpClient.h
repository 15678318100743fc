#pragma once
#include "Clock.h"
#include "HostRules.h"
#include "HttpMessage.h"

class QNetworkAccessManager;
class QNetworkProxy;
struct _GProxyResolver;

/// Sends one request at a time or several side by side, each once. Checks each address against the rules,
/// follows redirects (GET only, at most three, never to another host), uses the proxy of the environment or
/// the desktop, and sends "Plovendix v…" as the user agent. The time limit of a request begins with `send`
/// and includes the proxy lookup and all redirects. Connections are kept alive, but not across a suspend.
/// Main thread only.
class HttpClient final
{
public:
    /// Follows a redirect.
    using Follow = std::function<void()>;
    /// Decides when a redirect is followed.
    using RedirectPace = std::function<void(const Follow &follow)>;

    /// Uses the desktop's resolver unless another one is given, which must outlive this object.
    explicit HttpClient(Clock &clock, _GProxyResolver *resolver = nullptr);

    /// Completes on a later turn. Redirects are followed at once without a `pace`; the time limit includes
    /// its waits.
    [[nodiscard]] HttpCall send(const HttpRequest &request, const HostRules &rules, HttpCompletion completion,
                                RedirectPace pace = {});

    /// The user agent of every request: the program's name and version, digits and dots only.
    static QByteArray userAgent();

private:
    struct Attempt;
    class LearntProxies;
    void renewNetwork();
    void start(Attempt &attempt);
    void begin(Attempt &attempt, const QNetworkProxy &proxy);
    void arrive(Attempt &attempt, const HttpResult &outcome);

    Clock &m_clock;
    _GProxyResolver *m_resolver;
    std::shared_ptr<QNetworkAccessManager> m_network;
    LearntProxies *m_proxies = nullptr; // of the network
    Clock::Duration m_dateAhead{0};     // of the monotonic clock, which stops during a suspend
};
