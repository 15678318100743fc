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

/// The Updates pane of the preferences. Its controls are bound to the updater's settings; the pane itself
/// writes none and shows no results. Main thread only.
class PrefsUpdatesViewController final : public PlatformController<ViewController>
{
    Q_OBJECT

public:
    PrefsUpdatesViewController();
    ~PrefsUpdatesViewController() override;

    /// Always "Updates".
    QString title() const override;
    void loadView() override;
    void viewDidLoad() override;

    /// Asks the shared updater to check now; does nothing without an updater.
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
