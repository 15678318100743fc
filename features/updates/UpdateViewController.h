#pragma once
#include "UpdatePresenting.h"
#include <ui/window/PlatformSpecificController.h>

class QPushButton;
namespace Ui
{
class UpdateViewController;
}

/// The content of the update window: a running check, no newer version, a newer version with its notes, or a
/// failure. All texts are plain. Main thread only.
class UpdateViewController final : public PlatformController<ViewController>
{
    Q_OBJECT

public:
    UpdateViewController();
    ~UpdateViewController() override;

    void loadView() override;
    void viewWillAppear() override;
    void viewDidAppear() override;

    void showChecking();
    void showUpToDate(const QString &installedVersion);
    void showOffer(const UpdateOffer &offer);
    void showFailure(const QString &sentence);

    Q_INVOKABLE void getUpdate(QObject *sender);
    Q_INVOKABLE void skipVersion(QObject *sender);
    Q_INVOKABLE void close(QObject *sender);
    /// Called for Return: presses the focused button, else the default one.
    Q_INVOKABLE void pressDefaultButton(QObject *sender);

Q_SIGNALS:
    void getRequested();
    void skipRequested();

private:
    enum class State
    {
        Checking,
        Offer,
        Done
    };
    void enter(State state, const QString &headline, const QString &explanation);
    QSize sizeFor(State state);
    QPushButton *defaultButton() const;

    State m_state = State::Checking;
    std::unique_ptr<Ui::UpdateViewController> m_scene;
};
