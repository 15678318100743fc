#include "HttpClient.h"

#include "HttpExchange.h"
#include "ProxyLookup.h"
#include "WhileAlive.h"

#include <base/Bundle.h>

#include <QLoggingCategory>
#include <QNetworkAccessManager>
#include <QVersionNumber>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.net", QtInfoMsg)

constexpr int MaxRedirects = 3;
constexpr Clock::Duration ShortestLimit{1};
constexpr Clock::Duration MaxKeptSleep = std::chrono::seconds(30); // that kept connections survive

Clock::Duration dateAhead(const Clock &clock)
{
    return Clock::Duration(clock.date().toMSecsSinceEpoch()) - clock.now();
}

bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}
} // namespace

/// Qt asks for a proxy synchronously, so each proxy is looked up before its request starts.
class HttpClient::LearntProxies final : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override
    {
        return {byOrigin.value(HostRules::originOf(query.url()), refusingProxy())};
    }

    QHash<QUrl, QNetworkProxy> byOrigin;
};

/// A request until its answer, with its redirects.
struct HttpClient::Attempt : std::enable_shared_from_this<Attempt>
{
    HttpRequest request;
    HttpCompletion completion;
    RedirectPace pace;
    Clock::Duration end{0}; // of its time
    int redirects = 0;
    std::shared_ptr<void> step; // the exchange, or what precedes it
};

HttpClient::HttpClient(Clock &clock, _GProxyResolver *resolver)
    : m_clock(clock), m_resolver(resolver), m_dateAhead(dateAhead(clock))
{
    renewNetwork();
}

QByteArray HttpClient::userAgent()
{
    const auto version = QVersionNumber::fromString(
        Bundle::main().objectForInfoDictionaryKey(u"CFBundleShortVersionString"_s).toString());
    const QString text = u"Plovendix v%1.%2.%3"_s;
    return text.arg(version.majorVersion())
        .arg(version.minorVersion())
        .arg(version.microVersion())
        .toLatin1();
}

HttpCall HttpClient::send(const HttpRequest &request, const HostRules &rules, HttpCompletion completion,
                          RedirectPace pace)
{
    auto attempt = std::make_shared<Attempt>();
    attempt->request = request;
    attempt->request.setHeader("User-Agent", userAgent());
    attempt->completion = std::move(completion);
    attempt->pace = std::move(pace);
    attempt->end = m_clock.now() + request.deadline;
    if (rules.accepts(request.url)) {
        start(*attempt);
        return attempt;
    }
    const auto refuse = [](const auto &held) {
        held->completion(TransportFault{ServiceFailure::ForbiddenAddress, held->request.url.host()});
    };
    attempt->step = m_clock.after(Clock::Duration::zero(), whileAlive(attempt, refuse));
    return attempt;
}

void HttpClient::start(Attempt &attempt)
{
    // After a suspend, drop kept-alive connections: the servers have closed them unnoticed, and a GET would
    // wait for its timeout and a POST fail.
    const Clock::Duration before = std::exchange(m_dateAhead, dateAhead(m_clock));
    if (m_dateAhead - before > MaxKeptSleep)
        renewNetwork(); // running requests keep the old one
    if (const auto known = environmentProxy(attempt.request.url)) {
        begin(attempt, *known);
        return;
    }
    const auto take = [this](const auto &held, const QNetworkProxy &proxy) { begin(*held, proxy); };
    attempt.step = ProxyLookup::start(m_clock, attempt.request.url,
                                      whileAlive(attempt.shared_from_this(), take), m_resolver);
}

void HttpClient::renewNetwork()
{
    m_network = std::make_shared<QNetworkAccessManager>();
    m_proxies = new LearntProxies;
    m_network->setProxyFactory(m_proxies);
    m_network->setCookieJar(nullptr);
}

void HttpClient::begin(Attempt &attempt, const QNetworkProxy &proxy)
{
    m_proxies->byOrigin.insert(HostRules::originOf(attempt.request.url), proxy);
    if (attempt.request.onLeaving)
        attempt.request.onLeaving();
    attempt.request.deadline = std::max(attempt.end - m_clock.now(), ShortestLimit);
    const auto take = [this](const auto &held, const HttpResult &outcome) { arrive(*held, outcome); };
    attempt.step = HttpExchange::begin(m_network, m_clock, attempt.request,
                                       whileAlive(attempt.shared_from_this(), take));
}

void HttpClient::arrive(Attempt &attempt, const HttpResult &outcome)
{
    if (!outcome || !isRedirect(outcome->status) || attempt.request.method != HttpRequest::Method::Get) {
        attempt.completion(outcome);
        return;
    }
    const QByteArray location = outcome->header("Location");
    const QUrl next = attempt.request.url.resolved(QUrl::fromEncoded(location, QUrl::StrictMode));
    const bool isHere = !location.isEmpty() && next.isValid() &&
                        HostRules::originOf(next) == HostRules::originOf(attempt.request.url);
    if (!isHere || attempt.redirects == MaxRedirects) {
        attempt.completion(
            TransportFault{ServiceFailure::BadAnswer,
                           isHere ? u"too many redirects"_s : u"a redirect to nowhere or to another host"_s});
        return;
    }
    qCInfo(log).noquote() << "redirected by" << next.host();
    ++attempt.redirects;
    attempt.request.url = next;
    const Follow follow = whileAlive(attempt.shared_from_this(), [this](const auto &held) { start(*held); });
    if (attempt.pace)
        attempt.pace(follow);
    else
        follow();
}
