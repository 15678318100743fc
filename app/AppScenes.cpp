#include "AppScenes.h"

#include "MainMenuViewController.h"
#include "TitlebarViewController.h"

#include <features/about/AboutWindowController.h>
#include <features/donation/DonationPrompt.h>
#include <features/feedback/FeedbackViewController.h>
#include <features/preferences/PrefsWindowController.h>
#include <features/search/MainViewController.h>
#include <features/updates/UpdateViewController.h>
#include <ui/scenes/Storyboard.h>

void registerScenes()
{
    registerSearchScenes();
    registerPreferencesScenes();
    registerAboutScene();
    registerDonationScene();
    registerFeedbackScene();
    registerUpdateScene();
    const auto main = QStringLiteral("Main");
    Storyboard::registerController(main, QStringLiteral("TitlebarViewController"),
                                   [] { return ViewController::make<TitlebarViewController>(); });
    Storyboard::registerController(main, QStringLiteral("MainMenuViewController"),
                                   [] { return ViewController::make<MainMenuViewController>(); });
}
