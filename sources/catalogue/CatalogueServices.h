#pragma once
#include <QList>
#include <QString>
#include <memory>

class MetadataService;
class SubtitleService;

/// Makes the catalogue services for the process entry: the read-only catalogue at `starterPath` (the bundle's
/// "starter.sqlite") and the person's own, which is searched when it exists. Call on the main thread.
std::shared_ptr<SubtitleService> makeCatalogueSubtitleService(const QString &starterPath,
                                                              const QString &ownPath = {});
std::shared_ptr<MetadataService> makeCatalogueMetadataService(const QString &starterPath,
                                                              const QString &ownPath = {});

/// The path of the person's own catalogue: "Plovendix/catalogue.sqlite" in the person's data folder. It is
/// used for an empty `ownPath` above.
QString standardOwnCataloguePath();
