#pragma once
#include "UpdatePresenting.h"
#include <ui/window/WindowController.h>

class UpdateViewController;

/// The update window. Made on first use and kept; closing it is reported, too. Main thread only.
class UpdateWindowController final : public WindowController, public UpdatePresenting
{
    Q_OBJECT

public:
    UpdateWindowController() = default;

    void loadWindow() override;
    void windowDidLoad() override;

    void setAnswering(Answering *answering) override { m_answering = answering; }
    void showChecking() override;
    void showUpToDate(const QString &installedVersion) override;
    void showOffer(const UpdateOffer &offer, Arrival arrival) override;
    void showFailure(const QString &sentence) override;
    void bringForward() override;
    bool isShown() const override;
    void dismiss() override;

private:
    UpdateViewController &content();

    Answering *m_answering = nullptr;
    std::shared_ptr<UpdateViewController> m_viewController;
};

/// Registers `UpdateViewController` with the storyboard.
void registerUpdateScene();
