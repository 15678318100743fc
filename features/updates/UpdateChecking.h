#pragma once
#include <memory>
#include <utility>

class QObject;

/// The updater's interface for panels and menus. It reads and writes the settings "SUEnableAutomaticChecks",
/// "SUScheduledCheckInterval" (seconds) and "SULastCheckTime" (a date), and shows results in its own window.
/// Main thread only.
class UpdateChecking
{
public:
    virtual ~UpdateChecking() = default;

    /// Starts a check that the person requested. Returns at once.
    virtual void checkForUpdates(QObject *sender) = 0;

    /// The updater that the process entry installed, or null.
    static std::shared_ptr<UpdateChecking> sharedUpdater() { return s_shared; }
    static void setSharedUpdater(std::shared_ptr<UpdateChecking> updater) { s_shared = std::move(updater); }

private:
    static inline std::shared_ptr<UpdateChecking> s_shared;
};
