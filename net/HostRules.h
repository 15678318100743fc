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
    /// The rules of a service whose address a person may set: its host and `others`, or only this machine
    /// when the service is on it.
    static HostRules of(const QUrl &address, const QStringList &others = {});

    bool accepts(const QUrl &url) const;

    static bool isLoopback(const QString &host);
    /// The scheme, host and port, and any user name and password, of the address.
    static QUrl originOf(const QUrl &url);

private:
    bool knows(const QString &host) const;

    QStringList m_hosts;
    Loopback m_loopback = Loopback::Refused;
};
