#include "PreferencesScenes.h"

#include "PrefsGeneralViewController.h"

#include <platform/Storyboard.h>

void registerPreferencesScenes()
{
    Storyboard::registerController(QStringLiteral("Preferences"),
                                   QStringLiteral("PrefsGeneralViewController"),
                                   [] { return ViewController::make<PrefsGeneralViewController>(); });
}
