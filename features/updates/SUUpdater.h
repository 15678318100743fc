#pragma once
#include "UpdateChecking.h"
#include "UpdateChoice.h"
#include "UpdateViewController.h"

#include <base/UserDefaults.h>
#include <net/HttpClient.h>

/// The updater: checks at the times in the settings and on request, and offers a newer version. It installs
/// nothing. An automatic check is silent unless it finds a version that the person has not skipped. Main
/// thread only.
///
/// Settings: "UpdateFeedURL"; "SUEnableAutomaticChecks", on unless set; "SUScheduledCheckInterval" in
/// seconds; "SULastCheckTime", written when a check was completed, with any result; "SUSkippedVersion";
/// "SULastFeedDate", the date of the newest feed seen.
class SUUpdater final : public QObject, public UpdateChecking
{
    Q_OBJECT

public:
    /// The clock must outlive the updater.
    SUUpdater(Clock &clock, InstalledProgram installed);
    ~SUUpdater() override;

    void checkForUpdates(QObject *sender) override;

    /// The wait from `now` to the next check after `lastCheck`, which is invalid before the first. A last
    /// check in the future comes from a wrong clock and is ignored. The interval of 0 or less means a day.
    static Clock::Duration waitFor(const QDateTime &lastCheck, qint64 intervalSeconds, const QDateTime &now);

private:
    void getUpdate();
    void skipVersion();
    void windowClosed();

    UpdateViewController &panel();
    std::optional<Clock::Duration> nextWait() const;
    void schedule();
    void wake();
    void begin();
    void finish(const Result<AppcastFeed> &outcome);
    void fail(const base::Error &error);
    void present(const std::optional<AppcastItem> &found);
    void putOff(Clock::Duration pause);

    Clock &m_clock;
    std::unique_ptr<ui::Window> m_window; // made on first use and kept
    std::shared_ptr<UpdateViewController> m_panel;
    const InstalledProgram m_installed;
    HttpClient m_client;
    HttpCall m_check;            // the running check
    bool m_asked = false;        // the person requested the check and waits for its end
    UpdateOffer m_offer;         // the one shown last
    Clock::Duration m_notBefore; // no automatic check before that time
    Clock::Timer m_timer;
    std::vector<UserDefaults::Observation> m_observations;
};
