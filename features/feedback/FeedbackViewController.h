#pragma once
#include "FeedbackPresenting.h"
#include <ui/window/PlatformSpecificController.h>

namespace Ui
{
class FeedbackViewController;
}

/// The form of a report, which shows all data that would be sent. Unsent text stays when the window is
/// closed. Main thread only.
class FeedbackViewController final : public PlatformController<ViewController>
{
    Q_OBJECT

public:
    /// A longer text is refused with a message.
    static constexpr int MaxTextLength = 20'000;

    FeedbackViewController();
    ~FeedbackViewController() override;

    void loadView() override;
    void viewWillAppear() override;
    void viewDidAppear() override;

    void showForm(const FeedbackForm &form);
    void showSending();
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
    FeedbackForm m_form;
    std::unique_ptr<Ui::FeedbackViewController> m_scene;
};
