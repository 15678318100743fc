#pragma once
#include <platform/TitlebarAccessoryViewController.h>
#include <memory>

class MainViewController;
namespace Ui
{
class MainMenuViewController;
}

/// The title bar's leading end: the button with the main menu, whose shortcuts work all over the window.
class MainMenuViewController final : public TitlebarAccessoryViewController
{
    Q_OBJECT

public:
    MainMenuViewController();
    ~MainMenuViewController() override;

    /// Sends what concerns searches and results to `controller`.
    void serve(const std::shared_ptr<MainViewController> &controller);

    void loadView() override;

    Q_INVOKABLE void openVideo(QObject *sender);
    Q_INVOKABLE void saveAs(QObject *sender);
    Q_INVOKABLE void terminate(QObject *sender);

private:
    std::weak_ptr<MainViewController> m_main;
    std::unique_ptr<Ui::MainMenuViewController> m_scene;
};
