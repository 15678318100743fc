#pragma once
#include <QNetworkProxy>
#include <QUrl>
#include <optional>

/// The proxy named by the environment (https_proxy, http_proxy, all_proxy, no_proxy; lower or upper case,
/// read on each call). An unreadable value gives a refusing proxy. Loopback addresses never use a proxy.
/// Plain functions, any thread.
namespace EnvironmentProxy
{
/// None when the environment names no proxy for the address.
std::optional<QNetworkProxy> proxyFor(const QUrl &url);
/// Reads "host:port", or an address with an http or socks scheme.
QNetworkProxy proxyFromText(const QString &text);
/// A proxy that refuses every connection. It replaces one that cannot be determined, because a person who
/// names a proxy does not want direct connections.
QNetworkProxy refusingProxy();
} // namespace EnvironmentProxy
