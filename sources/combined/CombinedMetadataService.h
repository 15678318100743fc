#pragma once
#include <model/MetadataService.h>

/// Several sources of films and posters, asked one after another until one has it. A lookup (a film and its
/// picture) that has not ended when the next one begins is still answered by the source it is with, but asks
/// no further one: without an answer from there it ends unanswered. Main thread only.
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

    /// A source that fails is passed over where a later one has an answer; with none, the first failure is
    /// the answer.
    void findExternally(const QString &id, ExternalSource source, FindCompletion completion) override;
    /// A film without a picture where it was found gets that of a later source.
    void fetchImage(const TmdbItem &item, ImageKind kind, const QSize &size,
                    ImageCompletion completion) override;

private:
    struct Chain;
    std::shared_ptr<Chain> m_chain; // what outstanding steps hold weakly
};
