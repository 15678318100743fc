#pragma once
#include <QStringList>
#include <QUrl>
#include <memory>
#include <optional>

struct _GProxyResolver;

/// The proxies that the desktop's settings (GNOME, KDE, a PAC script) name for an address, read through GIO's
/// resolver. One object serves one lookup. Any thread.
class DesktopProxies final
{
public:
    /// Uses the desktop's resolver unless another one is given.
    explicit DesktopProxies(_GProxyResolver *resolver = nullptr);
    ~DesktopProxies();
    DesktopProxies(const DesktopProxies &) = delete;
    DesktopProxies &operator=(const DesktopProxies &) = delete;

    /// Addresses such as "http://proxy.example:3128", "socks5://…" and "direct://", the preferred one first.
    /// None when the settings cannot be read or after `cancel`. Blocks, because a script may have to be
    /// downloaded.
    std::optional<QStringList> lookUp(const QUrl &url) const;
    /// Ends a `lookUp` that runs on another thread.
    void cancel();

private:
    struct Private;
    std::unique_ptr<Private> d;
};
