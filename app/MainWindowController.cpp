#include "MainWindowController.h"

#include "AppDelegate.h"
#include "MainMenuViewController.h"
#include "TitlebarViewController.h"

#include <features/search/MainViewController.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

namespace
{
using namespace Qt::StringLiterals;

constexpr QSize ContentSize(760, 640);
} // namespace

MainWindowController::MainWindowController()
{
    const auto content =
        Storyboard::named(u"Main"_s).instantiate<MainViewController>(u"MainViewController"_s);
    if (AppDelegate *delegate = AppDelegate::shared())
        content->setPendingRequest(&delegate->externalRequest);
    setContentViewController(content);
}

MainWindowController::~MainWindowController() = default;

std::shared_ptr<MainViewController> MainWindowController::mainViewController() const
{
    return std::dynamic_pointer_cast<MainViewController>(contentViewController());
}

void MainWindowController::loadWindow()
{
    auto window = std::make_unique<ui::Window>();
    window->setObjectName(u"MainWindow"_s);
    window->setWindowTitle(u"Plovendix"_s);
    window->setFullSizeContentView(true);
    window->setContentSize(ContentSize);
    setWindow(std::move(window));
}

void MainWindowController::windowDidLoad()
{
    WindowController::windowDidLoad();
    ui::Window *mainWindow = window();
    if (mainWindow) {
        mainWindow->setTitlebarAppearsTransparent(true);
        mainWindow->center();
    }
    titlebarViewController = Storyboard::named(u"Main"_s).instantiate<TitlebarAccessoryViewController>(
        u"TitlebarViewController"_s);
    titlebarViewController->setLayoutAttribute(LayoutAttribute::Trailing);
    if (!mainWindow)
        return;
    if (const auto titlebar = std::dynamic_pointer_cast<TitlebarViewController>(titlebarViewController))
        titlebar->follow(mainViewController());
    mainWindow->addTitlebarAccessoryViewController(titlebarViewController);
    addMenu();
}

void MainWindowController::addMenu()
{
    m_menu = Storyboard::named(u"Main"_s).instantiate<MainMenuViewController>(u"MainMenuViewController"_s);
    m_menu->setLayoutAttribute(LayoutAttribute::Leading);
    m_menu->serve(mainViewController());
    window()->addTitlebarAccessoryViewController(m_menu);
}

void MainWindowController::activateAction(const QString &name)
{
    if (m_menu)
        m_menu->activateAction(name);
}
