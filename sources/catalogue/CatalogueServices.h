#pragma once
#include <QList>
#include <QString>
#include <memory>

class MetadataService;
class SubtitleService;

/// The embedded catalogues for the process entry to install: the read-only one at `starterPath` (the bundle's
/// "starter.sqlite") and beside it the person's own, searched whenever it exists. Call on the main thread.
std::shared_ptr<SubtitleService> makeCatalogueSubtitleService(const QString &starterPath,
                                                              const QString &ownPath = {});
std::shared_ptr<MetadataService> makeCatalogueMetadataService(const QString &starterPath,
                                                              const QString &ownPath = {});

/// Where the person's own catalogue is kept: "Plovendix/catalogue.sqlite" in the person's data folder. It
/// stands for an empty `ownPath` above.
QString standardOwnCataloguePath();
