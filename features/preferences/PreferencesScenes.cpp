#include "PreferencesScenes.h"

#include "PrefsGeneralViewController.h"
#include "PrefsServicesViewController.h"
#include "PrefsUpdatesViewController.h"

#include <ui/scenes/Storyboard.h>

void registerPreferencesScenes()
{
    const auto preferences = QStringLiteral("Preferences");
    Storyboard::registerController(preferences, QStringLiteral("PrefsGeneralViewController"),
                                   [] { return ViewController::make<PrefsGeneralViewController>(); });
    Storyboard::registerController(preferences, QStringLiteral("PrefsServicesViewController"),
                                   [] { return ViewController::make<PrefsServicesViewController>(); });
    Storyboard::registerController(preferences, QStringLiteral("PrefsUpdatesViewController"),
                                   [] { return ViewController::make<PrefsUpdatesViewController>(); });
}
