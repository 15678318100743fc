#include "AppScenes.h"

#include "MainMenuViewController.h"
#include "TitlebarViewController.h"

#include <languages/PreferencesScenes.h>
#include <panels/PanelScenes.h>
#include <platform/Storyboard.h>
#include <search/SearchScenes.h>

void registerScenes()
{
    registerSearchScenes();
    registerPreferencesScenes();
    registerPanelScenes();
    const auto main = QStringLiteral("Main");
    Storyboard::registerController(main, QStringLiteral("TitlebarViewController"),
                                   [] { return ViewController::make<TitlebarViewController>(); });
    Storyboard::registerController(main, QStringLiteral("MainMenuViewController"),
                                   [] { return ViewController::make<MainMenuViewController>(); });
}
