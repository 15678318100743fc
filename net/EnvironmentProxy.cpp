#include "EnvironmentProxy.h"

#include "HostRules.h"

using namespace Qt::StringLiterals;

namespace
{
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

} // namespace

QNetworkProxy EnvironmentProxy::refusingProxy()
{
    return {QNetworkProxy::HttpProxy, u"127.0.0.1"_s, UnusedPort};
}

QNetworkProxy EnvironmentProxy::proxyFromText(const QString &text)
{
    const QUrl url(text.contains("://"_L1) ? text : "http://"_L1 + text);
    if (!url.isValid() || url.host().isEmpty())
        return refusingProxy();
    const bool socks = url.scheme().startsWith("socks"_L1);
    return {socks ? QNetworkProxy::Socks5Proxy : QNetworkProxy::HttpProxy, url.host(),
            static_cast<quint16>(url.port(socks ? DefaultSocksPort : DefaultHttpPort)), url.userName(),
            url.password()};
}

std::optional<QNetworkProxy> EnvironmentProxy::proxyFor(const QUrl &url)
{
    if (HostRules::isLoopback(url.host()) || isExempt(url.host()))
        return QNetworkProxy(QNetworkProxy::NoProxy);
    QString text = environment(url.scheme().toLatin1() + "_proxy");
    if (text.isEmpty())
        text = environment("all_proxy");
    return text.isEmpty() ? std::nullopt : std::optional(proxyFromText(text));
}
