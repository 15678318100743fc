#include "Services.h"

#include <platform/Bundle.h>
#include <search/api/MetadataService.h>
#include <search/api/SubtitleService.h>
#include <services/catalogue/CatalogueServices.h>

void installServices()
{
    // A missing starter catalogue is met when it is searched, with a message.
    const auto starter = Bundle::main()
                             .pathForResource(QStringLiteral("starter"), QStringLiteral("sqlite"))
                             .value_or(QString());
    SubtitleService::setShared(makeCatalogueSubtitleService(starter));
    MetadataService::setShared(makeCatalogueMetadataService(starter));
}
