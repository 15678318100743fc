#include "FeedbackReporting.h"

#include <utility>

namespace
{
std::shared_ptr<FeedbackReporting> installedReporter;
}

std::shared_ptr<FeedbackReporting> FeedbackReporting::sharedReporter()
{
    return installedReporter;
}

void FeedbackReporting::setSharedReporter(std::shared_ptr<FeedbackReporting> reporter)
{
    installedReporter = std::move(reporter);
}
