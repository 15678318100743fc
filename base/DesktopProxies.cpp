#include "DesktopProxies.h"
#include "GObjectPointer.h"

#include <gio/gio.h>

#include <QLoggingCategory>

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform", QtInfoMsg)

struct ReleaseGTexts
{
    void operator()(char **texts) const { g_strfreev(texts); }
};
} // namespace

struct DesktopProxies::Private
{
    GProxyResolver *resolver = nullptr; // not owned when it is the desktop's
    GObjectPointer<GProxyResolver> owned;
    GObjectPointer<GCancellable> cancellable{g_cancellable_new()};
};

DesktopProxies::DesktopProxies(_GProxyResolver *resolver) : d(std::make_unique<Private>())
{
    if (!resolver)
        return;
    d->resolver = resolver;
    d->owned.reset(G_PROXY_RESOLVER(g_object_ref(resolver)));
}

DesktopProxies::~DesktopProxies() = default;

std::optional<QStringList> DesktopProxies::lookUp(const QUrl &url) const
{
    // Created on this thread because the first call reads its modules from disk.
    GProxyResolver *resolver = d->resolver ? d->resolver : g_proxy_resolver_get_default();
    const QByteArray address = url.adjusted(QUrl::RemoveUserInfo).toEncoded();
    GError *failure = nullptr;
    const std::unique_ptr<char *, ReleaseGTexts> found(
        g_proxy_resolver_lookup(resolver, address.constData(), d->cancellable.get(), &failure));
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
    g_cancellable_cancel(d->cancellable.get());
}
