#pragma once
#include <memory>

class QObject;

/// The program's updater as its panels and menus see it. It reads and writes the settings
/// "SUEnableAutomaticChecks", "SUScheduledCheckInterval" (seconds) and "SULastCheckTime" (a date), and shows
/// what a check finds in windows of its own. Main thread only.
class UpdateChecking
{
public:
    virtual ~UpdateChecking() = default;

    /// Starts a check now, on the person's own wish. Returns at once.
    virtual void checkForUpdates(QObject *sender) = 0;

    /// What the process entry installed, or nothing.
    static std::shared_ptr<UpdateChecking> sharedUpdater();
    static void setSharedUpdater(std::shared_ptr<UpdateChecking> updater);
};
