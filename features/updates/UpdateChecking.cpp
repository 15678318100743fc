#include "UpdateChecking.h"

#include <utility>

namespace
{
std::shared_ptr<UpdateChecking> installedUpdater;
}

std::shared_ptr<UpdateChecking> UpdateChecking::sharedUpdater()
{
    return installedUpdater;
}

void UpdateChecking::setSharedUpdater(std::shared_ptr<UpdateChecking> updater)
{
    installedUpdater = std::move(updater);
}
