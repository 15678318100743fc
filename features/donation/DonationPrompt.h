#pragma once
#include <features/search/DownloadPrompt.h>
#include <QDateTime>
#include <functional>

/// Puts the donation prompt in front of a download when its rule allows it. Made by the process entry; from
/// then until it goes it is the shared download prompt. Main thread only.
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

/// Tells the storyboard how to make `DonateViewController`.
void registerDonationScene();
