#include "HttpClient.h"

#include "EnvironmentProxy.h"

#include <base/Bundle.h>
#include <base/LocalizedString.h>

#include <QLoggingCategory>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.net", QtInfoMsg)

constexpr int MaxRedirects = 3;
constexpr Clock::Duration LongestNap = std::chrono::seconds(30); // that kept connections survive

Clock::Duration dateAhead(const Clock &clock)
{
    return Clock::Duration(clock.date().toMSecsSinceEpoch()) - clock.now();
}

bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}
QString originOf(const QUrl &url)
{
    return url.adjusted(QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment).toString();
}
} // namespace

/// Qt asks for a proxy synchronously, so each proxy is looked up before its request starts.
class HttpClient::LearntProxies final : public QNetworkProxyFactory
{
public:
    explicit LearntProxies(std::shared_ptr<ProxyTable> table) : m_table(std::move(table)) {}
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override
    {
        return {m_table->value(originOf(query.url()), EnvironmentProxy::refusingProxy())};
    }

private:
    const std::shared_ptr<ProxyTable> m_table;
};

std::shared_ptr<QNetworkAccessManager> HttpClient::newNetwork() const
{
    auto network = std::make_shared<QNetworkAccessManager>();
    network->setProxyFactory(new LearntProxies(m_proxies));
    network->setCookieJar(nullptr);
    return network;
}

base::Error HttpClient::forbidden(const QUrl &url) const
{
    base::Error error =
        serviceError(ServiceFailure::Insecure, m_service, "not a permitted address: "_L1 + url.host());
    error.localizedDescription = String::localize(
        u"The service cannot be asked at the address in the settings: it must begin with https."_s);
    return error;
}

/// A request and the redirects that it follows.
struct HttpClient::RedirectChain
{
    HttpRequest request;
    HostRules rules;
    Completion completion;
    int redirects = 0;
    Clock::Duration end{0};
    std::shared_ptr<ProxyLookup> proxy;
    std::shared_ptr<HttpExchange> exchange;
    Clock::Timer wait;
    RateQueue::Turn turn;
};

HttpClient::HttpClient(Clock &clock, ServiceName service, _GProxyResolver *resolver)
    : m_clock(clock),
      m_service(service),
      m_resolver(resolver),
      m_network(newNetwork()),
      m_dateAhead(dateAhead(clock))
{
}

QByteArray HttpClient::userAgent()
{
    const QString version =
        Bundle::main().objectForInfoDictionaryKey(u"CFBundleShortVersionString"_s).toString();
    QByteArray plain;
    for (const QChar c : version) {
        if ((c >= u'0' && c <= u'9') || c == u'.')
            plain += static_cast<char>(c.unicode());
    }
    QByteArrayList numbers = plain.split('.');
    numbers.removeAll(QByteArray());
    while (numbers.size() < 3)
        numbers += "0";
    return "Plovendix v" + numbers.join('.');
}

HttpClient::Call HttpClient::send(const HttpRequest &request, const HostRules &rules, Completion completion)
{
    auto chain = std::make_shared<RedirectChain>();
    chain->request = request;
    chain->request.setHeader("User-Agent", userAgent());
    chain->rules = rules;
    chain->completion = std::move(completion);
    chain->end = m_clock.now() + request.deadline;
    if (rules.accepts(request.url)) {
        step(chain);
        return chain;
    }
    const base::Error refused = forbidden(request.url);
    chain->wait = m_clock.after(Clock::Duration::zero(), [weak = std::weak_ptr(chain), refused] {
        if (const auto held = weak.lock())
            held->completion(refused);
    });
    return chain;
}

/// After a suspend, drop kept-alive connections: the servers have closed them unnoticed, and a GET would wait
/// for its timeout and a POST fail.
void HttpClient::renewAfterSleep()
{
    const Clock::Duration before = std::exchange(m_dateAhead, dateAhead(m_clock));
    if (m_dateAhead - before > LongestNap)
        m_network = newNetwork(); // running requests keep the old one
}

void HttpClient::step(const std::shared_ptr<RedirectChain> &chain)
{
    renewAfterSleep();
    const QUrl &url = chain->request.url;
    if (const auto known = EnvironmentProxy::proxyFor(url)) {
        begin(chain, *known);
        return;
    }
    chain->proxy = ProxyLookup::start(
        m_clock, url,
        [this, weak = std::weak_ptr(chain)](const QNetworkProxy &proxy) {
            if (const auto held = weak.lock())
                begin(held, proxy);
        },
        m_resolver);
}

void HttpClient::begin(const std::shared_ptr<RedirectChain> &chain, const QNetworkProxy &proxy)
{
    m_proxies->insert(originOf(chain->request.url), proxy);
    chain->request.deadline = std::max(chain->end - m_clock.now(), Clock::Duration(1));
    if (chain->request.onLeaving)
        chain->request.onLeaving();
    const std::weak_ptr weak(chain);
    chain->exchange = HttpExchange::begin(m_network, m_clock, m_service, chain->request,
                                          [this, weak](const Result<HttpAnswer> &outcome) {
                                              if (const auto held = weak.lock())
                                                  arrive(held, outcome);
                                          });
}

void HttpClient::arrive(const std::shared_ptr<RedirectChain> &chain, const Result<HttpAnswer> &outcome)
{
    if (!outcome || !isRedirect(outcome->status) || chain->request.method != HttpRequest::Method::Get) {
        chain->completion(outcome);
        return;
    }
    const Result<QUrl> next = nextAddress(*chain, *outcome);
    if (!next) {
        chain->completion(next.error());
        return;
    }
    follow(chain, *next);
}

void HttpClient::follow(const std::shared_ptr<RedirectChain> &chain, const QUrl &next)
{
    qCInfo(log).noquote() << "redirected by" << chain->request.url.host();
    ++chain->redirects;
    chain->request.url = next;
    const auto go = [this, weak = std::weak_ptr(chain)] {
        if (const auto held = weak.lock())
            step(held);
    };
    if (m_pace)
        chain->turn = m_pace->wait(go);
    else
        chain->wait = m_clock.after(Clock::Duration::zero(), go);
}

Result<QUrl> HttpClient::nextAddress(const RedirectChain &chain, const HttpAnswer &answer) const
{
    const QByteArray location = answer.header("Location");
    const QUrl next = chain.request.url.resolved(QUrl::fromEncoded(location, QUrl::StrictMode));
    const auto refuse = [this](QLatin1StringView why) {
        return serviceError(ServiceFailure::BadAnswer, m_service, why);
    };
    if (location.isEmpty() || !next.isValid())
        return refuse("a redirect to nowhere"_L1);
    if (chain.redirects >= MaxRedirects)
        return refuse("too many redirects"_L1);
    if (!HostRules::sameOrigin(chain.request.url, next) || !chain.rules.accepts(next))
        return refuse("a redirect to another host"_L1);
    return next;
}
