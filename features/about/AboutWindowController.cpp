#include "AboutWindowController.h"

#include "AboutViewController.h"

#include <base/LocalizedString.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr QSize ContentSize(402, 502);
}

AboutWindowController::AboutWindowController()
{
    setContentViewController(
        Storyboard::named(u"Main"_s).instantiate<AboutViewController>(u"AboutViewController"_s));
}

void AboutWindowController::loadWindow()
{
    auto window = std::make_unique<ui::Window>();
    window->setObjectName(u"AboutWindow"_s);
    window->setWindowTitle(String::localize(u"About Plovendix"_s));
    window->setResizable(false);
    window->setContentSize(ContentSize);
    setWindow(std::move(window));
}

void registerAboutScene()
{
    Storyboard::registerController(QStringLiteral("Main"), QStringLiteral("AboutViewController"),
                                   [] { return ViewController::make<AboutViewController>(); });
}
