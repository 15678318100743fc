#pragma once
#include <net/HttpMessage.h>
#include <net/ServiceError.h>
#include <QJsonObject>

/// How many downloads are left, as far as the service has said. A plain value.
struct RestQuota
{
    std::optional<int> allowed;
    std::optional<int> remaining;
    QDateTime reset; // UTC; invalid when unknown

    /// Whether asking for one more would be in vain at that date.
    bool isUsedUp(const QDateTime &date) const;
    /// The Error that says so.
    Error error(const QDateTime &date, const QString &detail) const;

    /// Takes in what the answer to an order says; what it leaves out stays as it was.
    void takeOrder(const QJsonObject &answer);
    /// The same for the answer of "/infos/user" and for the user in a login's answer.
    void takeUser(const QJsonObject &user);
};
