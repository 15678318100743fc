#pragma once
#include <services/net/HostRules.h>
#include <services/ranking/Ranking.h>

/// What a person has set for the subtitle service. A plain value.
struct RestSettings
{
    QUrl base = standardBase();
    QString apiKey;
    QString userName;
    QString password;
    RankingPreferences preferences;
    bool keepsOriginalBytes = false;

    static QUrl standardBase();
    bool hasAccount() const { return !userName.isEmpty() && !password.isEmpty(); }
    bool isOnLoopback() const { return HostRules::isLoopback(base.host()); }
    /// Where requests with the key may go: the service's own hosts, or this machine for a service that is on
    /// it.
    HostRules apiHosts() const;
    /// Where downloads may come from.
    HostRules linkHosts() const;
    /// The base for the host that a login names; the usual one for a host that is not the service's.
    QUrl baseAt(const QString &host) const;
};
