#include "DonationRule.h"

#include <base/UserDefaults.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
const QString DeliveriesKey = u"donationDeliveries"_s;
const QString LastAskedKey = u"donationLastAsked"_s;
} // namespace

bool DonationRule::mayAsk(const QDateTime &now) const
{
    if (isDeclined() || deliveries() < FewestDeliveries)
        return false;
    const QDateTime asked = lastAsked();
    if (!asked.isValid())
        return !isPutOff();
    return now >= asked.addDays(isPutOff() ? DaysAfterLater : DaysWithoutAnswer);
}

void DonationRule::noteDelivery()
{
    const qlonglong count = deliveries();
    if (count < FewestDeliveries)
        m_defaults.setObject(DeliveriesKey, count + 1);
}

void DonationRule::noteAsked(const QDateTime &now)
{
    m_defaults.setObject(LastAskedKey, now);
}

void DonationRule::dateLater(const QDateTime &now)
{
    if (isPutOff() && !lastAsked().isValid())
        noteAsked(now);
}

bool DonationRule::isDeclined() const
{
    return m_defaults.boolean(u"dontAskMeToDonate"_s);
}

bool DonationRule::isPutOff() const
{
    return m_defaults.boolean(u"askMeToDonateLater"_s);
}

qlonglong DonationRule::deliveries() const
{
    return std::max(0LL, m_defaults.integer(DeliveriesKey));
}

QDateTime DonationRule::lastAsked() const
{
    return m_defaults.object(LastAskedKey).toDateTime();
}
