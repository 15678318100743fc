#include "HostRules.h"

#include <QHostAddress>

using namespace Qt::StringLiterals;

namespace
{
constexpr int HttpsPort = 443;
constexpr int HttpPort = 80;

int effectivePort(const QUrl &url)
{
    return url.port(url.scheme() == "https"_L1 ? HttpsPort : HttpPort);
}
} // namespace

HostRules::HostRules(const QStringList &hosts, Loopback loopback) : m_hosts(hosts), m_loopback(loopback) {}

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
    for (const QString &rule : m_hosts) {
        if (rule.startsWith("*."_L1)) {
            if (host.endsWith(QStringView(rule).mid(1), Qt::CaseInsensitive) ||
                QStringView(rule).mid(2).compare(host, Qt::CaseInsensitive) == 0)
                return true;
        } else if (rule.compare(host, Qt::CaseInsensitive) == 0) {
            return true;
        }
    }
    return false;
}

bool HostRules::sameOrigin(const QUrl &one, const QUrl &other)
{
    return one.scheme() == other.scheme() && one.host().compare(other.host(), Qt::CaseInsensitive) == 0 &&
           effectivePort(one) == effectivePort(other);
}
