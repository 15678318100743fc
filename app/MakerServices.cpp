#include "MakerServices.h"

#include <base/Bundle.h>
#include <features/feedback/FRFeedbackReporter.h>
#include <features/feedback/FeedbackWindowController.h>
#include <features/feedback/RecentMessages.h>
#include <features/updates/SUUpdater.h>
#include <features/updates/UpdateWindowController.h>
#include <net/SystemClock.h>

#include <QCoreApplication>

namespace
{
/// Declared in this order, so that the user of the window and the clock is destroyed first.
struct Updater
{
    SystemClock clock;
    UpdateWindowController window;
    SUUpdater updater{clock, window, InstalledProgram::ofBundle(Bundle::main())};
};

struct Reporter
{
    SystemClock clock;
    FeedbackWindowController window;
    FRFeedbackReporter reporter{clock, window};
};
} // namespace

void installMakerServices()
{
    RecentMessages::install();
    const auto updater = std::make_shared<Updater>();
    UpdateChecking::setSharedUpdater({updater, &updater->updater});
    const auto reporter = std::make_shared<Reporter>();
    FeedbackReporting::setSharedReporter({reporter, &reporter->reporter});
    // Windows and timers must be destroyed before the application object.
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, [] {
        UpdateChecking::setSharedUpdater({});
        FeedbackReporting::setSharedReporter({});
        RecentMessages::uninstall();
    });
}
