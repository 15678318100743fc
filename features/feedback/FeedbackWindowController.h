#pragma once
#include "FeedbackPresenting.h"
#include <ui/window/WindowController.h>

class FeedbackViewController;

/// The feedback window. Made on first use and kept. A running transfer continues when it is closed. Main
/// thread only.
class FeedbackWindowController final : public WindowController, public FeedbackPresenting
{
    Q_OBJECT

public:
    FeedbackWindowController() = default;

    void loadWindow() override;
    void windowDidLoad() override;

    void setAnswering(Answering *answering) override { m_answering = answering; }
    void showForm(const FeedbackForm &form) override;
    void showSending() override;
    void bringForward() override;
    void showSent() override;
    void showFailure(const QString &sentence) override;

private:
    FeedbackViewController &content();

    Answering *m_answering = nullptr;
    std::shared_ptr<FeedbackViewController> m_viewController;
};

/// Registers `FeedbackViewController` with the storyboard.
void registerFeedbackScene();
