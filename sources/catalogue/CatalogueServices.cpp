#include "CatalogueServices.h"

#include "CatalogueMetadata.h"
#include "CatalogueService.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
QList<CataloguePlace> places(const QString &starterPath, const QString &ownPath)
{
    const QString own = ownPath.isEmpty() ? standardOwnCataloguePath() : ownPath;
    return {{starterPath, CataloguePlace::Presence::Required}, {own, CataloguePlace::Presence::Optional}};
}
} // namespace

QString standardOwnCataloguePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           "/Plovendix/catalogue.sqlite"_L1;
}

std::shared_ptr<SubtitleService> makeCatalogueSubtitleService(const QString &starterPath,
                                                              const QString &ownPath)
{
    return std::make_shared<CatalogueService>(places(starterPath, ownPath));
}

std::shared_ptr<MetadataService> makeCatalogueMetadataService(const QString &starterPath,
                                                              const QString &ownPath)
{
    return std::make_shared<CatalogueMetadata>(places(starterPath, ownPath));
}
