#pragma once
#include <QNetworkProxy>
#include <QUrl>
#include <optional>

/// The proxy that the environment names (https_proxy, http_proxy, all_proxy, no_proxy; lower or upper case,
/// read each time); one that cannot be read is one that refuses. This machine is never asked through one.
/// Plain functions, any thread.
namespace EnvironmentProxy
{
/// Nothing where the environment says nothing of the address.
std::optional<QNetworkProxy> proxyFor(const QUrl &url);
/// "host:port", or an address with http or socks in front.
QNetworkProxy proxyFromText(const QString &text);
/// One that is not there, for a proxy that cannot be learnt: whoever names one does not want to go without.
QNetworkProxy refusingProxy();
} // namespace EnvironmentProxy
