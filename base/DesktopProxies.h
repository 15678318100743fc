#pragma once
#include <QStringList>
#include <QUrl>
#include <memory>
#include <optional>

struct _GProxyResolver;

/// The proxies that the desktop's settings name for an address, as GIO's resolver reads them: GNOME's, KDE's,
/// a script of the network. One object for one question. Any thread.
class DesktopProxies final
{
public:
    /// The desktop's own resolver unless another is given.
    explicit DesktopProxies(_GProxyResolver *resolver = nullptr);
    ~DesktopProxies();
    DesktopProxies(const DesktopProxies &) = delete;
    DesktopProxies &operator=(const DesktopProxies &) = delete;

    /// Addresses such as "http://proxy.example:3128", "socks5://…" and "direct://", the preferred one first.
    /// Nothing when the settings cannot be read, and after `cancel`. Blocks: a script may have to be fetched.
    std::optional<QStringList> lookUp(const QUrl &url) const;
    /// Ends `lookUp` on another thread.
    void cancel();

private:
    struct Private;
    std::unique_ptr<Private> d;
};
