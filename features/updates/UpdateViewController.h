#pragma once
#include <ui/window/PlatformSpecificController.h>
#include <QUrl>

class QPushButton;
namespace Ui
{
class UpdateViewController;
}

/// A version that is offered. All texts are shown as plain text.
struct UpdateOffer
{
    QString version;
    QString installedVersion;
    QString notes; // several lines; empty when there are none
    QUrl link;     // where to get it
};

/// The update window's content: a running check, no newer version, a newer version with its notes, or a
/// failure. It shows one state at a time; each shows the window, and brings it forward unless it came by
/// itself. Main thread only.
class UpdateViewController final : public PlatformController<ViewController>
{
    Q_OBJECT

public:
    enum class Arrival
    {
        Asked,   // the person waits for it
        ByItself // must not disturb the person
    };

    UpdateViewController();
    ~UpdateViewController() override;

    /// A new window with a new controller as its content, not shown yet.
    static std::unique_ptr<ui::Window> makeWindow();

    void loadView() override;
    void viewWillAppear() override;
    void viewDidAppear() override;

    void showChecking();
    void showUpToDate(const QString &installedVersion);
    void showOffer(const UpdateOffer &offer, Arrival arrival);
    void showFailure(const QString &sentence);

    Q_INVOKABLE void getUpdate(QObject *sender);
    Q_INVOKABLE void skipVersion(QObject *sender);
    Q_INVOKABLE void close(QObject *sender);
    /// Called for Return: presses the focused button, else the default one.
    Q_INVOKABLE void pressDefaultButton(QObject *sender);

Q_SIGNALS:
    void getRequested();
    void skipRequested();
    /// The person closed the window: an offer stays unanswered, and a running check ends.
    void closed();

private:
    enum class State
    {
        Checking,
        Offer,
        Done
    };
    void enter(State state, const QString &headline, const QString &explanation,
               Arrival arrival = Arrival::Asked);
    QSize sizeFor(State state);
    QPushButton *defaultButton() const;

    State m_state = State::Checking;
    std::unique_ptr<Ui::UpdateViewController> m_scene;
};

/// Registers `UpdateViewController` with the storyboard.
void registerUpdateScene();
