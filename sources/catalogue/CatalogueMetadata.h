#pragma once
#include "CatalogueService.h"

#include <model/MetadataService.h>

/// Films of the catalogues and their pictures, found by IMDb id. A worker thread reads and decodes;
/// completions are called on the main thread. The catalogues hold one picture per film, so the preferred
/// language has no effect.
class CatalogueMetadata final : public MetadataService
{
public:
    explicit CatalogueMetadata(const QList<CataloguePlace> &places);
    ~CatalogueMetadata() override;

    /// An unknown film is an answer with empty lists. The first catalogue that has the film is used.
    void findExternally(const QString &id, ExternalSource source, FindCompletion completion) override;
    void fetchImage(const TmdbItem &item, ImageKind kind, const QSize &size,
                    ImageCompletion completion) override;

private:
    struct State; // the state that jobs share
    std::shared_ptr<State> m_state;
    WorkerThread m_worker;
};
