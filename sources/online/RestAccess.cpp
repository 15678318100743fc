#include "RestAccess.h"

using namespace Qt::StringLiterals;

namespace
{
const QStringList ServiceHosts{u"api.opensubtitles.com"_s, u"vip-api.opensubtitles.com"_s};
const QString LinkHosts = u"*.opensubtitles.com"_s;
} // namespace

QUrl RestAccess::standardBase()
{
    return QUrl(u"https://api.opensubtitles.com/api/v1"_s);
}

HostRules RestAccess::apiHosts() const
{
    if (isOnLoopback())
        return HostRules({}, HostRules::Loopback::Accepted);
    return HostRules(ServiceHosts.contains(base.host()) ? ServiceHosts : QStringList(base.host()));
}

HostRules RestAccess::linkHosts() const
{
    if (isOnLoopback())
        return HostRules({}, HostRules::Loopback::Accepted);
    return HostRules({LinkHosts, base.host()});
}

QUrl RestAccess::baseAt(const QString &host) const
{
    QUrl url = base;
    const QUrl named(base.scheme() + "://"_L1 + host);
    if (!named.isValid() || named.host().isEmpty() || !named.path().isEmpty() || !apiHosts().accepts(named))
        return base;
    // A host name without a port keeps our port.
    if (named.host() == base.host() && named.port() == -1)
        return base;
    url.setHost(named.host());
    url.setPort(named.port());
    return url;
}
