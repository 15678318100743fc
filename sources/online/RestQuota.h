#pragma once
#include <net/HttpMessage.h>
#include <net/ServiceError.h>
#include <QJsonObject>

/// The remaining downloads, as far as the service has reported them. A plain value.
struct RestQuota
{
    std::optional<int> allowed;
    std::optional<int> remaining;
    QDateTime reset; // UTC; invalid when unknown

    /// Whether another order would be refused at that date.
    bool isUsedUp(const QDateTime &date) const;
    /// The Error for that.
    base::Error error(const QDateTime &date, const QString &detail) const;

    /// Reads the answer to an order; absent members keep their values.
    void takeOrder(const QJsonObject &answer);
    /// The same for the answer of "/infos/user" and for the user in a login answer.
    void takeUser(const QJsonObject &user);
};
