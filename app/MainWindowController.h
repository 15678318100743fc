#pragma once
#include <platform/WindowController.h>
#include <memory>

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

private:
    void addMenu();
};
