#include "PanelScenes.h"

#include "AboutViewController.h"
#include "DonateViewController.h"
#include "FeedbackViewController.h"
#include "PrefsServicesViewController.h"
#include "PrefsUpdatesViewController.h"
#include "UpdateViewController.h"

#include <platform/Storyboard.h>

using namespace Qt::StringLiterals;

void registerPanelScenes()
{
    Storyboard::registerController(u"Preferences"_s, u"PrefsServicesViewController"_s,
                                   [] { return ViewController::make<PrefsServicesViewController>(); });
    Storyboard::registerController(u"Preferences"_s, u"PrefsUpdatesViewController"_s,
                                   [] { return ViewController::make<PrefsUpdatesViewController>(); });
    Storyboard::registerController(u"Main"_s, u"AboutViewController"_s,
                                   [] { return ViewController::make<AboutViewController>(); });
    Storyboard::registerController(u"Main"_s, u"DonateViewController"_s,
                                   [] { return ViewController::make<DonateViewController>(); });
    Storyboard::registerController(u"Main"_s, u"FeedbackViewController"_s,
                                   [] { return ViewController::make<FeedbackViewController>(); });
    Storyboard::registerController(u"Main"_s, u"UpdateViewController"_s,
                                   [] { return ViewController::make<UpdateViewController>(); });
}
