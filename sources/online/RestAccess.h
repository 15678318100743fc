#pragma once
#include <net/HostRules.h>

/// Where the subtitle service is and who asks it. Everything done for one question goes by one of these to
/// its end: no key, login or kept answer of one is used for another. A plain value.
struct RestAccess
{
    QUrl base = standardBase();
    QString apiKey;
    QString userName;
    QString password;

    static QUrl standardBase();
    bool hasAccount() const { return !userName.isEmpty() && !password.isEmpty(); }
    bool isOnLoopback() const { return HostRules::isLoopback(base.host()); }
    /// Where requests with the key may go: the service's own hosts, or for an address of a person's own that
    /// host alone; this machine for a service that is on it.
    HostRules apiHosts() const;
    /// Where downloads may come from.
    HostRules linkHosts() const;
    /// The base for the host that a login names; ours for a host that the key may not go to.
    QUrl baseAt(const QString &host) const;

    bool operator==(const RestAccess &) const = default;
};
