#include "ui_PrefsUpdatesViewController.h"

#include "PrefsUpdatesViewController.h"

#include <features/updates/UpdateChecking.h>
#include <ui/scenes/Bindings.h>
#include <ui/scenes/SceneConnections.h>

using namespace Qt::StringLiterals;

PrefsUpdatesViewController::PrefsUpdatesViewController() = default;
PrefsUpdatesViewController::~PrefsUpdatesViewController() = default;

QString PrefsUpdatesViewController::title() const
{
    return String::localize(u"Updates"_s);
}

void PrefsUpdatesViewController::loadView()
{
    auto root = std::make_unique<QWidget>();
    m_scene = std::make_unique<Ui::PrefsUpdatesViewController>();
    m_scene->setupUi(root.get());
    autoCheckForUpdatesCheckbox = m_scene->autoCheckForUpdatesCheckbox;
    checkFrequencyPopup = m_scene->checkFrequencyPopup;
    lastCheckTextField = m_scene->lastCheckTextField;
    checkNowButton = m_scene->checkNowButton;
    checkForUpdatesLabel = m_scene->checkForUpdatesLabel;
    lastCheckLabel = m_scene->lastCheckLabel;
    connectScene(*root, *this);
    setView(std::move(root));
}

void PrefsUpdatesViewController::viewDidLoad()
{
    PlatformController::viewDidLoad();
    bindToDefaults(*autoCheckForUpdatesCheckbox, Binding::Value, u"SUEnableAutomaticChecks"_s);
    bindToDefaults(*checkFrequencyPopup, Binding::SelectedTag, u"SUScheduledCheckInterval"_s);
    bindToDefaults(*checkFrequencyPopup, Binding::Enabled, u"SUEnableAutomaticChecks"_s);
    bindToDefaults(*lastCheckTextField, Binding::Value, u"SULastCheckTime"_s);
    checkForUpdatesLabel->setText(String::localize(u"Check for updates"_s));
    lastCheckLabel->setText(String::localize(u"Last check"_s));
    checkNowButton->setText(String::localize(u"Check Now"_s));
    autoCheckForUpdatesCheckbox->setText(String::localize(u"Automatically check for updates"_s));
}

void PrefsUpdatesViewController::checkForUpdates(QObject *)
{
    if (const auto updater = UpdateChecking::sharedUpdater())
        updater->checkForUpdates(nullptr);
}
