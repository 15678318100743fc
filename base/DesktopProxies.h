#pragma once
#include <QStringList>
#include <QUrl>
#include <memory>
#include <optional>

struct _GCancellable;
struct _GProxyResolver;

/// The proxies that the desktop's settings (GNOME, KDE, a PAC script) name for an address, read through GIO's
/// resolver. One object serves one lookup. Any thread.
class DesktopProxies final
{
public:
    /// Uses the desktop's resolver unless another one is given.
    explicit DesktopProxies(_GProxyResolver *resolver = nullptr);

    /// Addresses such as "http://proxy.example:3128", "socks5://…" and "direct://", the preferred one first.
    /// None when the settings cannot be read or after `cancel`. Blocks, because a script may have to be
    /// downloaded.
    std::optional<QStringList> lookUp(const QUrl &url) const;
    /// Ends a `lookUp` that runs on another thread.
    void cancel();

private:
    std::shared_ptr<_GProxyResolver> m_resolver; // null for the desktop's
    std::shared_ptr<_GCancellable> m_cancellable;
};
