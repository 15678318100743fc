#pragma once
#include <QStringList>
#include <QUrl>

/// The addresses at which a service may be reached. HTTPS only; clear text is allowed only for loopback
/// addresses and only when the service itself is configured there. A plain value, any thread.
class HostRules final
{
public:
    enum class Loopback
    {
        Refused,
        Accepted
    };

    HostRules() = default;
    /// `hosts` are exact names, or "*.name" for a name and its subdomains.
    explicit HostRules(const QStringList &hosts, Loopback loopback = Loopback::Refused);

    bool accepts(const QUrl &url) const;

    static bool isLoopback(const QString &host);
    /// Whether both have the same scheme, host and port.
    static bool sameOrigin(const QUrl &one, const QUrl &other);

private:
    bool knows(const QString &host) const;

    QStringList m_hosts;
    Loopback m_loopback = Loopback::Refused;
};
