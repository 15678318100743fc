#pragma once
#include "RestSettings.h"

#include <net/HttpMessage.h>
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
    base::Error error(const RestAccess &access, const QDateTime &date, const QString &detail) const;

    /// Reads the answer to an order and returns whether it says something; absent members keep their values.
    bool takeOrder(const HttpAnswer &answer);
    /// The same for the answer of "/infos/user" and for the user in a login answer.
    void takeUser(const QJsonObject &user);
    /// The link in the answer to an order, if its host is allowed. The quota must be that of the answer.
    Result<QUrl> linkFrom(const HttpAnswer &answer, const RestAccess &access, const QDateTime &date) const;
};
