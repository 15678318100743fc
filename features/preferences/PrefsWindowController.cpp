#include "PrefsWindowController.h"

#include "PrefsGeneralViewController.h"
#include "PrefsServicesViewController.h"
#include "PrefsTabViewController.h"
#include "PrefsUpdatesViewController.h"

#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

using namespace Qt::StringLiterals;

namespace
{
const QString StoryboardName = u"Preferences"_s;
const QStringList PaneOrder = {u"PrefsGeneralViewController"_s, u"PrefsServicesViewController"_s,
                               u"PrefsUpdatesViewController"_s};
} // namespace

PrefsWindowController::PrefsWindowController() : PrefsWindowController(availablePanes()) {}

PrefsWindowController::PrefsWindowController(const QStringList &paneIdentifiers)
    : m_identifiers(paneIdentifiers)
{
    const Storyboard storyboard = Storyboard::named(StoryboardName);
    QList<std::shared_ptr<ViewController>> panes;
    for (const QString &identifier : paneIdentifiers)
        panes += storyboard.instantiateController(identifier);
    m_tabs = ViewController::make<PrefsTabViewController>(panes);
    setContentViewController(m_tabs);
}

PrefsWindowController::~PrefsWindowController() = default;

QStringList PrefsWindowController::availablePanes()
{
    QStringList registered = Storyboard::named(StoryboardName).controllerIdentifiers();
    QStringList panes;
    for (const QString &identifier : PaneOrder) {
        if (registered.removeOne(identifier))
            panes += identifier;
    }
    return panes + registered;
}

void PrefsWindowController::showPane(const QString &identifier)
{
    m_tabs->showPane(static_cast<int>(m_identifiers.indexOf(identifier)));
}

void PrefsWindowController::loadWindow()
{
    auto window = std::make_unique<ui::Window>();
    window->setObjectName(u"PreferencesWindow"_s);
    window->setResizable(false);
    window->setStandardButtonHidden(ui::Window::StandardButton::Miniaturize, true);
    window->setStandardButtonHidden(ui::Window::StandardButton::Zoom, true);
    setWindow(std::move(window));
}

void PrefsWindowController::windowDidLoad()
{
    WindowController::windowDidLoad();
    m_tabs->fitWindow();
    if (ui::Window *preferences = window())
        preferences->center();
}

void registerPreferencesScenes()
{
    Storyboard::registerController(StoryboardName, u"PrefsGeneralViewController"_s,
                                   [] { return ViewController::make<PrefsGeneralViewController>(); });
    Storyboard::registerController(StoryboardName, u"PrefsServicesViewController"_s,
                                   [] { return ViewController::make<PrefsServicesViewController>(); });
    Storyboard::registerController(StoryboardName, u"PrefsUpdatesViewController"_s,
                                   [] { return ViewController::make<PrefsUpdatesViewController>(); });
}
