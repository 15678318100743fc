#pragma once
#include <ui/window/WindowController.h>
#include <memory>

class MainMenuViewController;
class MainViewController;
class TitlebarAccessoryViewController;

/// The main window: its transparent title bar with the language pop-up at the trailing end and the main menu
/// at the leading one, around the main view. One, made by the process entry; main thread only.
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

    /// Does what the main menu's entry of that name does; nothing where there is none.
    void activateAction(const QString &name);

private:
    void addMenu();

    std::shared_ptr<MainMenuViewController> m_menu; // once the window has loaded
};
