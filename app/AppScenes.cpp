#include "AppScenes.h"

#include "MainMenuViewController.h"
#include "TitlebarViewController.h"

#include <platform/Storyboard.h>
#include <search/SearchScenes.h>

void registerScenes()
{
    registerSearchScenes();
    const auto main = QStringLiteral("Main");
    Storyboard::registerController(main, QStringLiteral("TitlebarViewController"),
                                   [] { return ViewController::make<TitlebarViewController>(); });
    Storyboard::registerController(main, QStringLiteral("MainMenuViewController"),
                                   [] { return ViewController::make<MainMenuViewController>(); });
}
