#pragma once
#include <ui/window/WindowController.h>
#include <memory>

class MainMenuViewController;
class MainViewController;
class TitlebarAccessoryViewController;

/// The main window: a transparent title bar with the language pop-up at the trailing and the main menu at the
/// leading end, around the main view. The process entry makes one; main thread only.
class MainWindowController final : public WindowController
{
    Q_OBJECT

public:
    MainWindowController();
    ~MainWindowController() override;

    void loadWindow() override;
    void windowDidLoad() override;

    std::shared_ptr<MainViewController> mainViewController() const;
    std::shared_ptr<TitlebarAccessoryViewController> titlebarViewController;

    /// Triggers the main menu's entry of that name; does nothing without one.
    void activateAction(const QString &name);

private:
    void addMenu();

    std::shared_ptr<MainMenuViewController> m_menu; // once the window has loaded
};
