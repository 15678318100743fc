#include "DonationPrompt.h"

#include "DonateViewController.h"
#include "DonationRule.h"

#include <base/UserDefaults.h>
#include <features/search/MainViewController.h>
#include <ui/scenes/Storyboard.h>

#include <utility>

using namespace Qt::StringLiterals;

DonationPrompt::DonationPrompt(Clock clock) : m_clock(std::move(clock))
{
    DownloadPrompt::setShared(this);
}

DonationPrompt::~DonationPrompt()
{
    DownloadPrompt::setShared(nullptr);
}

bool DonationPrompt::presentBeforeDownload(MainViewController &presenter)
{
    DonationRule rule(UserDefaults::standard());
    const QDateTime now = m_clock();
    rule.dateLater(now);
    if (!rule.mayAsk(now))
        return false;
    rule.noteAsked(now);
    presenter.presentViewControllerAsModalWindow(
        Storyboard::named(u"Main"_s).instantiate<DonateViewController>(u"DonateViewController"_s));
    return true;
}

void DonationPrompt::noteDelivery()
{
    DonationRule(UserDefaults::standard()).noteDelivery();
}

void registerDonationScene()
{
    Storyboard::registerController(QStringLiteral("Main"), QStringLiteral("DonateViewController"),
                                   [] { return ViewController::make<DonateViewController>(); });
}
