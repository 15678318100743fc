#include "SubtitleService.h"

#include <base/FatalFault.h>

namespace
{
std::shared_ptr<SubtitleService> sharedService;
}

SubtitleService::~SubtitleService() = default;

SubtitleService &SubtitleService::shared()
{
    if (!sharedService)
        fatalFault(QStringLiteral("No subtitle service was installed"));
    return *sharedService;
}

void SubtitleService::setShared(std::shared_ptr<SubtitleService> service)
{
    sharedService = std::move(service);
}

std::optional<VideoHash> SubtitleService::hashFor(const QUrl &url)
{
    return shared().computeHash(url);
}

VideoFileComponents VideoFileUtilities::componentsFrom(const QUrl &url)
{
    return SubtitleService::shared().componentsOf(url);
}
