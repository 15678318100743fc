#include "HostRules.h"

#include <QHostAddress>

#include <algorithm>

using namespace Qt::StringLiterals;

HostRules::HostRules(const QStringList &hosts, Loopback loopback) : m_hosts(hosts), m_loopback(loopback) {}

HostRules HostRules::of(const QUrl &address, const QStringList &others)
{
    return isLoopback(address.host()) ? HostRules({}, Loopback::Accepted)
                                      : HostRules(others + QStringList(address.host()));
}

bool HostRules::isLoopback(const QString &host)
{
    // Only addresses count as loopback: the name "localhost" may resolve to any host.
    const QHostAddress address(host);
    return !address.isNull() && address.isLoopback();
}

bool HostRules::accepts(const QUrl &url) const
{
    if (!url.isValid() || url.host().isEmpty() || !url.userInfo().isEmpty())
        return false;
    const bool secure = url.scheme() == "https"_L1;
    if (isLoopback(url.host()))
        return m_loopback == Loopback::Accepted && (secure || url.scheme() == "http"_L1);
    return secure && knows(url.host());
}

bool HostRules::knows(const QString &host) const
{
    return std::any_of(m_hosts.cbegin(), m_hosts.cend(), [&host](const QString &rule) {
        const QString name = rule.startsWith("*."_L1) ? rule.mid(2) : rule;
        return host.compare(name, Qt::CaseInsensitive) == 0 ||
               (name != rule && host.endsWith(u'.' + name, Qt::CaseInsensitive));
    });
}

QUrl HostRules::originOf(const QUrl &url)
{
    constexpr int HttpsPort = 443;
    constexpr int HttpPort = 80;
    QUrl origin = url.adjusted(QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment);
    if (origin.port() == (origin.scheme() == "https"_L1 ? HttpsPort : HttpPort))
        origin.setPort(-1);
    return origin;
}
