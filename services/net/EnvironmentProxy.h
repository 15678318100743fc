#pragma once
#include <QNetworkProxyFactory>

/// The proxy that the environment names (https_proxy, http_proxy, all_proxy, no_proxy; lower or upper case,
/// read each time); one that cannot be read is one that refuses. This machine is never asked through one.
class EnvironmentProxy final : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override;

    static QNetworkProxy proxyFor(const QUrl &url);
};
