#include "RestSettings.h"

using namespace Qt::StringLiterals;

QUrl RestAccess::standardBase()
{
    return QUrl(u"https://api.opensubtitles.com/api/v1"_s);
}

HostRules RestAccess::apiHosts() const
{
    const QStringList hosts{u"api.opensubtitles.com"_s, u"vip-api.opensubtitles.com"_s};
    return HostRules::of(base, hosts.contains(base.host()) ? hosts : QStringList());
}

HostRules RestAccess::linkHosts() const
{
    return HostRules::of(base, {u"*.opensubtitles.com"_s});
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
