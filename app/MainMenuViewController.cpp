#include "ui_MainMenuViewController.h"

#include "AppDelegate.h"
#include "MainMenuViewController.h"

#include <base/Links.h>
#include <features/about/AboutWindowController.h>
#include <features/preferences/PrefsWindowController.h>
#include <features/search/MainViewController.h>
#include <features/updates/UpdateChecking.h>
#include <ui/scenes/SceneConnections.h>
#include <ui/window/DialogFrame.h>
#include <ui/window/Window.h>

#include <QApplication>
#include <QFileDialog>
#include <QMenu>

namespace
{
using namespace Qt::StringLiterals;

QString videoFilter()
{
    return String::localize(u"Videos"_s) +
           u" (*.mkv *.mp4 *.avi *.mov *.m4v *.webm *.mpg *.mpeg *.ts *.m2ts *.wmv *.flv *.ogv *.3gp)"_s;
}
} // namespace

MainMenuViewController::MainMenuViewController() = default;
MainMenuViewController::~MainMenuViewController() = default;

void MainMenuViewController::serve(const std::shared_ptr<MainViewController> &controller)
{
    m_main = controller;
}

void MainMenuViewController::loadView()
{
    auto root = std::make_unique<QWidget>();
    m_scene = std::make_unique<Ui::MainMenuViewController>();
    m_scene->setupUi(root.get());
    m_scene->menuButton->setMenu(m_scene->menu);
    connectScene(*root, *this);
    // The other actions also belong to the whole program, but are disabled during a modal window.
    ui::Window::addActionToEveryWindow(*m_scene->quitAction);
    connect(m_scene->menu, &QMenu::aboutToShow, this, &MainMenuViewController::showWhatIsThere);
    setView(std::move(root));
}

void MainMenuViewController::activateAction(const QString &name)
{
    view();
    showWhatIsThere();
    const auto actions = m_scene->menu->actions();
    for (QAction *action : actions) {
        if (action->isVisible() && !action->isSeparator() && action->objectName() == name + u"Action"_s)
            return action->trigger();
    }
}

void MainMenuViewController::openVideo(QObject *)
{
    auto *dialog = new QFileDialog(window(), String::localize(u"Open Video"_s));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilters({videoFilter(), String::localize(u"All files"_s) + u" (*)"_s});
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) {
        if (const auto main = m_main.lock(); main && !path.isEmpty())
            main->searchForFile(QUrl::fromLocalFile(path), std::nullopt);
    });
    DialogFrame::putAround(*dialog);
    dialog->open();
}

void MainMenuViewController::saveAs(QObject *)
{
    if (const auto main = m_main.lock())
        main->saveSelectedSubtitleAs();
}

void MainMenuViewController::preferences(QObject *)
{
    if (!m_preferences)
        m_preferences = std::make_unique<PrefsWindowController>();
    m_preferences->showWindow();
}

void MainMenuViewController::visitQuorvane(QObject *sender)
{
    if (AppDelegate *delegate = AppDelegate::shared())
        delegate->visitQuorvane(sender);
}

void MainMenuViewController::showWhatIsThere()
{
    m_scene->updatesAction->setVisible(UpdateChecking::sharedUpdater() != nullptr);
    m_scene->feedbackAction->setVisible(FeedbackReporting::sharedReporter() != nullptr);
}

void MainMenuViewController::checkForUpdates(QObject *sender)
{
    if (const auto updater = UpdateChecking::sharedUpdater())
        updater->checkForUpdates(sender);
}

void MainMenuViewController::sendFeedback(QObject *sender)
{
    if (AppDelegate *delegate = AppDelegate::shared())
        delegate->sendFeedback(sender);
}

void MainMenuViewController::donate(QObject *)
{
    Links::open(Links::DonationPage);
}

void MainMenuViewController::orderFrontStandardAboutPanel(QObject *)
{
    if (!m_about)
        m_about = std::make_unique<AboutWindowController>();
    m_about->showWindow();
}

void MainMenuViewController::terminate(QObject *)
{
    QApplication::closeAllWindows();
    QApplication::quit();
}
