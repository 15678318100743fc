#pragma once
#include <memory>

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
    static std::shared_ptr<UpdateChecking> sharedUpdater();
    static void setSharedUpdater(std::shared_ptr<UpdateChecking> updater);
};
