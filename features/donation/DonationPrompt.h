#pragma once
#include <features/search/DownloadPrompt.h>
#include <QDateTime>
#include <functional>

/// Shows the donation prompt before a download when its rule allows. Made by the process entry; it is the
/// shared download prompt during its life. Main thread only.
class DonationPrompt final : public DownloadPrompt
{
public:
    using Clock = std::function<QDateTime()>;

    explicit DonationPrompt(Clock clock = &QDateTime::currentDateTimeUtc);
    ~DonationPrompt() override;
    DonationPrompt(const DonationPrompt &) = delete;
    DonationPrompt &operator=(const DonationPrompt &) = delete;

    bool presentBeforeDownload(MainViewController &presenter) override;
    void noteDelivery() override;

private:
    Clock m_clock;
};

/// Registers `DonateViewController` with the storyboard.
void registerDonationScene();
