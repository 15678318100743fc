#pragma once
#include "InstalledProgram.h"
#include "UpdateFeed.h"
#include "UpdateSchedule.h"

#include "UpdateChecking.h"
#include "UpdatePresenting.h"
#include <base/UserDefaults.h>

/// The updater: checks at the times in the settings and on request, and offers a newer version. It installs
/// nothing. An automatic check is silent unless it finds a version that the person has not skipped. Main
/// thread only.
///
/// Settings: "UpdateFeedURL"; "SUEnableAutomaticChecks", on unless set; "SUScheduledCheckInterval" in
/// seconds; "SULastCheckTime", written when a check was completed, with any result; "SUSkippedVersion";
/// "SULastFeedDate", the date of the newest feed seen.
class SUUpdater final : public UpdateChecking, private UpdatePresenting::Answering
{
public:
    /// Both must outlive the updater.
    SUUpdater(Clock &clock, UpdatePresenting &window, InstalledProgram installed);
    ~SUUpdater() override;
    SUUpdater(const SUUpdater &) = delete;
    SUUpdater &operator=(const SUUpdater &) = delete;

    void checkForUpdates(QObject *sender) override;

private:
    void getUpdate() override;
    void skipVersion() override;
    void windowClosed() override;

    UpdateSchedule scheduleInSettings() const;
    void schedule();
    void wake();
    void begin();
    void finish(const Result<AppcastFeed> &outcome);
    void fail(const base::Error &error);
    void present(const std::optional<AppcastItem> &found);
    void putOff(Clock::Duration pause);

    Clock &m_clock;
    UpdatePresenting &m_window;
    const InstalledProgram m_installed;
    UpdateFeed m_feed;
    HttpClient::Call m_check; // the running check
    bool m_asked = false;     // the person requested the check and waits for its end
    std::optional<UpdateOffer> m_offer;
    Clock::Duration m_notBefore; // no automatic check before that time
    Clock::Timer m_timer;
    std::vector<UserDefaults::Observation> m_observations;
};
