#pragma once
#include <ui/window/PlatformSpecificController.h>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
namespace Ui
{
class PrefsUpdatesViewController;
}

/// The Updates pane of the preferences. Every control is bound to the updater's settings; the pane writes
/// none itself and shows no result of a check. Main thread only.
class PrefsUpdatesViewController final : public PlatformController<ViewController>
{
    Q_OBJECT

public:
    PrefsUpdatesViewController();
    ~PrefsUpdatesViewController() override;

    /// Always "Updates", whatever was set.
    QString title() const override;
    void loadView() override;
    void viewDidLoad() override;

    /// Asks the shared updater to check now; nothing happens while none is installed.
    Q_INVOKABLE void checkForUpdates(QObject *sender);

private:
    QCheckBox *autoCheckForUpdatesCheckbox = nullptr;
    QComboBox *checkFrequencyPopup = nullptr;
    QLabel *lastCheckTextField = nullptr;
    QPushButton *checkNowButton = nullptr;
    QLabel *checkForUpdatesLabel = nullptr;
    QLabel *lastCheckLabel = nullptr;
    std::unique_ptr<Ui::PrefsUpdatesViewController> m_scene;
};
