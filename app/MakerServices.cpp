#include "MakerServices.h"

#include <base/Bundle.h>
#include <features/feedback/FRFeedbackReporter.h>
#include <features/feedback/RecentMessages.h>
#include <features/updates/SUUpdater.h>
#include <net/SystemClock.h>

#include <QCoreApplication>

namespace
{
/// Declared in this order, so that the user of the clock is destroyed first.
struct Updater
{
    SystemClock clock;
    SUUpdater updater{clock, InstalledProgram::ofBundle(Bundle::main())};
};

struct Reporter
{
    SystemClock clock;
    FRFeedbackReporter reporter{clock};
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
