#include "ProxyLookup.h"

#include "HostRules.h"

#include <base/MainQueue.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr Clock::Duration LookupTimeout = std::chrono::seconds(10);
constexpr quint16 UnusedPort = 0;
constexpr int DefaultHttpPort = 8080;
constexpr int DefaultSocksPort = 1080;

QString environment(const QByteArray &name)
{
    const QString value = qEnvironmentVariable(name.constData()).trimmed();
    return value.isEmpty() ? qEnvironmentVariable(name.toUpper().constData()).trimmed() : value;
}

bool isExempt(const QString &host)
{
    const QStringList exempt = environment("no_proxy").split(u',', Qt::SkipEmptyParts);
    for (const QString &entry : exempt) {
        QString name = entry.trimmed();
        if (name == u'*')
            return true;
        // ".name" and "*.name" mean the same as "name".
        name.remove(0, name.startsWith("*."_L1) ? 2 : name.startsWith(u'.') ? 1 : 0);
        if (host.compare(name, Qt::CaseInsensitive) == 0 || host.endsWith(u'.' + name, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

/// Reads "host:port", or an address with an http or socks scheme.
QNetworkProxy proxyFromText(const QString &text)
{
    const QUrl url(text.contains("://"_L1) ? text : "http://"_L1 + text);
    if (!url.isValid() || url.host().isEmpty())
        return refusingProxy();
    const bool socks = url.scheme().startsWith("socks"_L1);
    return {socks ? QNetworkProxy::Socks5Proxy : QNetworkProxy::HttpProxy, url.host(),
            static_cast<quint16>(url.port(socks ? DefaultSocksPort : DefaultHttpPort)), url.userName(),
            url.password()};
}

/// The first proxy of a kind that Qt supports.
QNetworkProxy usable(const std::optional<QStringList> &addresses)
{
    for (const QString &address : addresses.value_or(QStringList())) {
        if (address.startsWith("direct:"_L1))
            return QNetworkProxy::NoProxy;
        if (address.startsWith("http:"_L1) || address.startsWith("socks"_L1))
            return proxyFromText(address);
    }
    return refusingProxy();
}
} // namespace

QNetworkProxy refusingProxy()
{
    return {QNetworkProxy::HttpProxy, u"127.0.0.1"_s, UnusedPort};
}

std::optional<QNetworkProxy> environmentProxy(const QUrl &url)
{
    if (HostRules::isLoopback(url.host()) || isExempt(url.host()))
        return QNetworkProxy(QNetworkProxy::NoProxy);
    QString text = environment(url.scheme().toLatin1() + "_proxy");
    if (text.isEmpty())
        text = environment("all_proxy");
    return text.isEmpty() ? std::nullopt : std::optional(proxyFromText(text));
}

std::shared_ptr<ProxyLookup> ProxyLookup::start(Clock &clock, const QUrl &url, Completion completion,
                                                _GProxyResolver *resolver)
{
    const std::shared_ptr<ProxyLookup> lookup(new ProxyLookup(std::move(completion), resolver));
    // A PAC script gets only the origin of the address.
    lookup->m_thread =
        std::thread([self = lookup.get(), origin = HostRules::originOf(url), weak = std::weak_ptr(lookup)] {
            MainQueue::shared().async([weak, proxy = usable(self->m_desktop.lookUp(origin))] {
                if (const auto held = weak.lock())
                    held->finish(proxy);
            });
        });
    lookup->m_limit = clock.after(LookupTimeout, [self = lookup.get()] { self->finish(refusingProxy()); });
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

void ProxyLookup::finish(const QNetworkProxy &proxy)
{
    m_limit.reset();
    if (const Completion completion = std::exchange(m_completion, nullptr))
        completion(proxy);
}
