#pragma once
#include <features/search/DownloadPrompt.h>
#include <QDateTime>
#include <functional>

/// Asks for a donation before a download: not before the program was useful, never after it was declined, at
/// the earliest a month after "later", and not twice a day when the prompt was closed without an answer. Main
/// thread only.
///
/// Reads the answers "dontAskMeToDonate" and "askMeToDonateLater", which the prompt's view writes, and stores
/// a count and a time, all in the settings.
class DonationPrompt final : public DownloadPrompt
{
public:
    static constexpr int FewestDeliveries = 5;
    static constexpr int DaysAfterLater = 30;
    static constexpr int DaysWithoutAnswer = 1;

    using Clock = std::function<QDateTime()>;
    explicit DonationPrompt(Clock clock = &QDateTime::currentDateTimeUtc) : m_clock(std::move(clock)) {}

    /// Whether the prompt is to be shown now; it then counts as shown. Dates an undated "later" from now.
    bool isDue();

    bool presentBeforeDownload(MainViewController &presenter) override;
    /// Counts a delivered subtitle, up to the needed number.
    void noteDelivery() override;

private:
    Clock m_clock;
};

/// Registers `DonateViewController` with the storyboard.
void registerDonationScene();
