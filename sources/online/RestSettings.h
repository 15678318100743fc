#pragma once
#include <net/HostRules.h>

/// The address and account of the subtitle service. Each request uses one access until its end: no key, login
/// or cached answer of one is used for another. A plain value.
struct RestAccess
{
    QUrl base = standardBase();
    QString apiKey;
    QString userName;
    QString password;

    static QUrl standardBase();
    bool hasAccount() const { return !userName.isEmpty() && !password.isEmpty(); }
    /// The hosts that may get the key: the service's own hosts, or only the configured host, or this machine
    /// when the service is on it.
    HostRules apiHosts() const;
    /// The hosts of download links.
    HostRules linkHosts() const;
    /// The base for the host in a login answer; ours for a host that must not get the key.
    QUrl baseAt(const QString &host) const;

    bool operator==(const RestAccess &) const = default;
};

/// What a person has set for the subtitle service. A plain value.
struct RestSettings : RestAccess
{
    bool asksForMachineTranslated = false;
    bool keepsOriginalBytes = false;
};
