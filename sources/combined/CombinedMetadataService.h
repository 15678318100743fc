#pragma once
#include <model/MetadataService.h>

/// Asks several sources of films and posters one after another until one has the film. A new lookup (a film
/// and its picture) cancels a running one, which is never answered. Main thread only.
class CombinedMetadataService final : public MetadataService
{
public:
    struct Source
    {
        std::shared_ptr<MetadataService> service;
        std::function<bool()> isAsked; // empty for always
    };

    explicit CombinedMetadataService(const QList<Source> &sources);
    ~CombinedMetadataService() override;

    /// A failing source is skipped when a later one has an answer; otherwise the first failure is the answer.
    void findExternally(const QString &id, ExternalSource source, FindCompletion completion) override;
    /// When the film's own source has no picture, later sources are asked.
    void fetchImage(const TmdbItem &item, ImageKind kind, const QSize &size,
                    ImageCompletion completion) override;

private:
    struct Chain;
    std::shared_ptr<Chain> m_chain; // pending steps hold it weakly
};
