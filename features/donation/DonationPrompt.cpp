#include "DonationPrompt.h"

#include "DonateViewController.h"

#include <base/UserDefaults.h>
#include <features/search/MainViewController.h>
#include <ui/scenes/Storyboard.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
const QString DeliveriesKey = u"donationDeliveries"_s;
const QString LastAskedKey = u"donationLastAsked"_s;

qlonglong deliveries()
{
    return std::max(0LL, UserDefaults::standard().integer(DeliveriesKey));
}
} // namespace

bool DonationPrompt::isDue()
{
    UserDefaults &defaults = UserDefaults::standard();
    const QDateTime now = m_clock();
    const bool isPutOff = defaults.boolean(u"askMeToDonateLater"_s);
    QDateTime asked = defaults.object(LastAskedKey).toDateTime();
    if (isPutOff && !asked.isValid()) {
        asked = now;
        defaults.setObject(LastAskedKey, now);
    }
    if (defaults.boolean(u"dontAskMeToDonate"_s) || deliveries() < FewestDeliveries)
        return false;
    if (asked.isValid() && now < asked.addDays(isPutOff ? DaysAfterLater : DaysWithoutAnswer))
        return false;
    defaults.setObject(LastAskedKey, now);
    return true;
}

bool DonationPrompt::presentBeforeDownload(MainViewController &presenter)
{
    if (!isDue())
        return false;
    presenter.presentViewControllerAsModalWindow(
        Storyboard::named(u"Main"_s).instantiate<DonateViewController>(u"DonateViewController"_s));
    return true;
}

void DonationPrompt::noteDelivery()
{
    const qlonglong count = deliveries();
    if (count < FewestDeliveries)
        UserDefaults::standard().setObject(DeliveriesKey, count + 1);
}

void registerDonationScene()
{
    Storyboard::registerController(u"Main"_s, u"DonateViewController"_s,
                                   [] { return ViewController::make<DonateViewController>(); });
}
