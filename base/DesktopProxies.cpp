#include "DesktopProxies.h"
#include "GObjectPointer.h"

#include <gio/gio.h>

#include <QLoggingCategory>

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform", QtInfoMsg)
} // namespace

DesktopProxies::DesktopProxies(_GProxyResolver *resolver) : m_cancellable(g_cancellable_new(), g_object_unref)
{
    if (resolver)
        m_resolver.reset(G_PROXY_RESOLVER(g_object_ref(resolver)), g_object_unref);
}

std::optional<QStringList> DesktopProxies::lookUp(const QUrl &url) const
{
    // Created on this thread because the first call reads its modules from disk.
    GProxyResolver *resolver = m_resolver ? m_resolver.get() : g_proxy_resolver_get_default();
    const QByteArray address = url.adjusted(QUrl::RemoveUserInfo).toEncoded();
    GError *failure = nullptr;
    const GTextList found(
        g_proxy_resolver_lookup(resolver, address.constData(), m_cancellable.get(), &failure));
    const GErrorPointer error(failure);
    if (!found) {
        qCWarning(log) << "the proxy settings cannot be read:" << (error ? error->message : "");
        return std::nullopt;
    }
    QStringList proxies;
    for (char **proxy = found.get(); *proxy; ++proxy)
        proxies += QString::fromUtf8(*proxy);
    return proxies;
}

void DesktopProxies::cancel()
{
    g_cancellable_cancel(m_cancellable.get());
}
