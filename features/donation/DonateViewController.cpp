#include "ui_DonateViewController.h"

#include "DonateViewController.h"

#include <base/URLComponents.h>
#include <base/UserDefaults.h>
#include <base/Workspace.h>
#include <features/search/MainViewController.h>
#include <ui/scenes/SceneConnections.h>
#include <ui/window/Window.h>

using namespace Qt::StringLiterals;

namespace
{
const QString DeclinedKey = u"dontAskMeToDonate"_s;
const QString LaterKey = u"askMeToDonateLater"_s;
} // namespace

DonateViewController::DonateViewController(const QString &donationPage) : m_donationPage(donationPage)
{
    setTitle(String::localize(u"Support Plovendix"_s));
}

DonateViewController::~DonateViewController() = default;

void DonateViewController::loadView()
{
    auto root = std::make_unique<QWidget>();
    m_scene = std::make_unique<Ui::DonateViewController>();
    m_scene->setupUi(root.get());
    maybeLaterButton = m_scene->maybeLaterButton;
    dontAskMeAgainButton = m_scene->dontAskMeAgainButton;
    m_scene->iconView->setImage(ui::Image::named(u"com.quorvane.Plovendix"_s));
    connectScene(*root, *this);
    setView(std::move(root));
}

void DonateViewController::viewWillAppear()
{
    PlatformController::viewWillAppear();
    if (ui::Window *prompt = window())
        prompt->setResizable(false);
}

void DonateViewController::viewDidAppear()
{
    PlatformController::viewDidAppear();
    if (ui::Window *prompt = window())
        prompt->makeFirstResponder(m_scene->maybeLaterButton);
}

void DonateViewController::closeAndDownload()
{
    // Get the presenter first, because the dismissed prompt no longer has one.
    const auto main = std::dynamic_pointer_cast<MainViewController>(presentingViewController());
    dismissController(nullptr);
    if (main)
        main->downloadSelectedSubtitle();
}

void DonateViewController::maybeLater(QObject *)
{
    closeAndDownload();
    UserDefaults::standard().setObject(LaterKey, true);
}

void DonateViewController::dontAskMeAgain(QObject *)
{
    closeAndDownload();
    UserDefaults::standard().setObject(DeclinedKey, true);
}

void DonateViewController::buyMeACoffee(QObject *)
{
    closeAndDownload();
    const auto page = parseURLString(m_donationPage);
    if (!page)
        return;
    Workspace::sharedWorkspace().openURL(*page);
    UserDefaults::standard().setObject(DeclinedKey, true);
}

void DonateViewController::cancel(QObject *)
{
    dismissController(nullptr);
}
