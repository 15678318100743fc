#pragma once
#include <base/Links.h>
#include <ui/window/PlatformSpecificController.h>

class QPushButton;
namespace Ui
{
class DonateViewController;
}

/// A prompt for a donation before a download. Each of its three buttons closes it and continues the download
/// in the main view that presented it; closing it otherwise starts nothing. Main thread only.
class DonateViewController final : public PlatformController<ViewController>
{
    Q_OBJECT

public:
    explicit DonateViewController(const QString &donationPage = Links::DonationPage);
    ~DonateViewController() override;

    void loadView() override;
    void viewWillAppear() override;
    void viewDidAppear() override;

    Q_INVOKABLE void maybeLater(QObject *sender);
    Q_INVOKABLE void dontAskMeAgain(QObject *sender);
    Q_INVOKABLE void buyMeACoffee(QObject *sender);
    /// Closes the prompt without an answer.
    Q_INVOKABLE void cancel(QObject *sender);

private:
    void closeAndDownload();

    QPushButton *maybeLaterButton = nullptr;
    QPushButton *dontAskMeAgainButton = nullptr;
    QString m_donationPage;
    std::unique_ptr<Ui::DonateViewController> m_scene;
};
