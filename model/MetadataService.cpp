#include "MetadataService.h"

#include <base/FatalFault.h>

namespace
{
std::shared_ptr<MetadataService> sharedService;
}

MetadataService::~MetadataService() = default;

MetadataService &MetadataService::shared()
{
    if (!sharedService)
        fatalFault(QStringLiteral("No metadata service was installed"));
    return *sharedService;
}

void MetadataService::setShared(std::shared_ptr<MetadataService> service)
{
    sharedService = std::move(service);
}
