#pragma once
#include <QStringList>
#include <QUrl>

/// Which addresses a service may be asked at. HTTPS only; clear text is for this machine alone, and only
/// where the service itself was configured to be there. A plain value, any thread.
class HostRules final
{
public:
    enum class Loopback
    {
        Refused,
        Accepted
    };

    HostRules() = default;
    /// `hosts` are exact names, or "*.name" for a name and all below it.
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
