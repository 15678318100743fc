#pragma once
#include <ui/window/PlatformSpecificController.h>
#include <ui/window/TitlebarAccessoryViewController.h>
#include <memory>

class AboutWindowController;
class MainViewController;
class PrefsWindowController;
namespace Ui
{
class MainMenuViewController;
}

/// The leading end of the title bar: the button with the main menu, whose shortcuts work in every window.
class MainMenuViewController final : public PlatformController<TitlebarAccessoryViewController>
{
    Q_OBJECT

public:
    MainMenuViewController();
    ~MainMenuViewController() override;

    /// Sends the actions for searches and results to `controller`.
    void serve(const std::shared_ptr<MainViewController> &controller);

    /// Triggers the menu entry of that name ("preferences", "quit"); does nothing without one.
    void activateAction(const QString &name);

    void loadView() override;

    Q_INVOKABLE void openVideo(QObject *sender);
    Q_INVOKABLE void saveAs(QObject *sender);
    Q_INVOKABLE void preferences(QObject *sender);
    Q_INVOKABLE void visitQuorvane(QObject *sender);
    Q_INVOKABLE void checkForUpdates(QObject *sender);
    Q_INVOKABLE void sendFeedback(QObject *sender);
    Q_INVOKABLE void donate(QObject *sender);
    Q_INVOKABLE void orderFrontStandardAboutPanel(QObject *sender);
    Q_INVOKABLE void terminate(QObject *sender);

private:
    void showWhatIsThere();

    std::weak_ptr<MainViewController> m_main;
    std::unique_ptr<Ui::MainMenuViewController> m_scene;
    std::unique_ptr<PrefsWindowController> m_preferences; // from its first use on
    std::unique_ptr<AboutWindowController> m_about;       // from its first use on
};
