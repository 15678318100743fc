#pragma once
#include <base/MainQueue.h>
#include <model/MetadataService.h>
#include <model/SubtitleService.h>
#include <net/secrets/SecretStore.h>

/// A catalogue with nothing in it.
class EmptyCatalogue final : public SubtitleService
{
public:
    void query(const QList<Arg> &, QueryCompletion completion) override
    {
        MainQueue::shared().async(
            [completion = std::move(completion)] { completion(QueryResult{QList<SubtitlePtr>()}); });
    }
    void cancelQueryTask() override {}
    void download(const SubtitlePtr &, DownloadCompletion) override {}
    void cancelDownloads() override {}

protected:
    std::optional<VideoHash> computeHash(const QUrl &) override { return std::nullopt; }
    VideoFileComponents componentsOf(const QUrl &) override { return {}; }
};

/// One with a subtitle for every question.
class SmallCatalogue final : public SubtitleService
{
public:
    void query(const QList<Arg> &, QueryCompletion completion) override
    {
        auto found = std::make_shared<Subtitle>();
        found->service = QStringLiteral("catalogue");
        found->fileID = found->subFileName = QStringLiteral("Local");
        MainQueue::shared().async([completion = std::move(completion), found] {
            completion(QueryResult{QList<SubtitlePtr>{found}});
        });
    }
    void cancelQueryTask() override {}
    void download(const SubtitlePtr &, DownloadCompletion) override {}
    void cancelDownloads() override {}

protected:
    std::optional<VideoHash> computeHash(const QUrl &) override { return std::nullopt; }
    VideoFileComponents componentsOf(const QUrl &) override { return {}; }
};

class EmptyMetadata final : public MetadataService
{
public:
    void findExternally(const QString &, ExternalSource, FindCompletion completion) override
    {
        MainQueue::shared().async([completion = std::move(completion)] { completion(FindResult()); });
    }
    void fetchImage(const TmdbItem &, ImageKind, const QSize &, ImageCompletion) override {}
};

/// A keyring whose question nobody answers, and which takes nothing.
class LockedStore final : public SecretStore
{
public:
    int reads = 0;
    void read(Secret, ReadCompletion) override { ++reads; }
    void write(Secret, const QString &, WriteCompletion completion) override
    {
        MainQueue::shared().async([completion = std::move(completion)] {
            completion(base::Error{QStringLiteral("test"), 1, QStringLiteral("locked")});
        });
    }
};
