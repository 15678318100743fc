#pragma once
#include "KeptReports.h"

#include <ui/window/PlatformSpecificController.h>

namespace Ui
{
class FeedbackViewController;
}

/// The feedback window's content: the form of a report, which shows all data that would be sent. Unsent text
/// stays when the window is closed, and a running transfer continues. Main thread only.
class FeedbackViewController final : public PlatformController<ViewController>
{
    Q_OBJECT

public:
    /// A longer text is refused with a message.
    static constexpr int MaxTextLength = 20'000;

    FeedbackViewController();
    ~FeedbackViewController() override;

    /// A new window with a new controller as its content, not shown yet.
    static std::unique_ptr<ui::Window> makeWindow();

    void loadView() override;
    void viewWillAppear() override;
    void viewDidAppear() override;

    /// Shows the window with the data of a report; its log may be sent with it. `hint` is a sentence about a
    /// report that could not be sent before, whose text replaces an empty one.
    void showForm(const FeedbackReport &report, const QString &hint);
    void showSending();
    /// These two do not open the window.
    void showSent();
    void showFailure(const QString &sentence);

    Q_INVOKABLE void send(QObject *sender);
    /// Cancels a running transfer, or closes the window.
    Q_INVOKABLE void cancel(QObject *sender);
    Q_INVOKABLE void showDetails(QObject *sender);

Q_SIGNALS:
    void sendRequested(const QString &text, bool withLog);
    void stopRequested();

private:
    enum class State
    {
        Writing,
        Sending,
        Sent
    };
    void enter(State state, const QString &status);
    void judgeText();
    bool maySend() const;

    State m_state = State::Writing;
    FeedbackReport m_report; // as shown
    std::unique_ptr<Ui::FeedbackViewController> m_scene;
};

/// Registers `FeedbackViewController` with the storyboard.
void registerFeedbackScene();
