#pragma once
#include "CatalogueErrors.h"
#include "CatalogueService.h"

#include <model/MetadataService.h>

/// Films of the catalogues and their pictures, found by IMDb id. Reading and decoding happen on a thread of
/// its own; completions arrive on the main thread. The catalogues keep one picture a film, so the preferred
/// language changes nothing here.
class CatalogueMetadata final : public MetadataService
{
public:
    explicit CatalogueMetadata(const QList<CataloguePlace> &places);
    ~CatalogueMetadata() override;

    /// A film that no catalogue has is an answer with empty lists. The first catalogue that has it counts.
    void findExternally(const QString &id, ExternalSource source, FindCompletion completion) override;
    void fetchImage(const TmdbItem &item, ImageKind kind, const QSize &size,
                    ImageCompletion completion) override;

private:
    struct State; // what the jobs use
    std::shared_ptr<State> m_state;
    WorkerThread m_worker;
};
