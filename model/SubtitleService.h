#pragma once
#include <base/Result.h>
#include "Query.h"
#include <QUrl>
#include <functional>
#include <memory>
#include <optional>

/// Finds and fetches subtitles. Called on the main thread; completions arrive on any thread.
class SubtitleService
{
public:
    using QueryCompletion = std::function<void(Result<QueryResult>)>;
    using DownloadCompletion = std::function<void(Result<QUrl>)>;

    virtual ~SubtitleService();

    /// The service that the process entry installed; a fatal fault before that.
    static SubtitleService &shared();
    static void setShared(std::shared_ptr<SubtitleService> service);

    /// Searches for subtitles. Each query completes once, never before this call has returned and never after
    /// it was cancelled.
    virtual void query(const QList<Arg> &args, QueryCompletion completion) = 0;
    /// Drops every outstanding query; a dropped query is never answered.
    virtual void cancelQueryTask() = 0;
    /// Fetches a result's file to the local disk: a URL that the caller may move away.
    virtual void download(const SubtitlePtr &subtitle, DownloadCompletion completion) = 0;
    /// Drops every outstanding download; its completion is not called. A completion that already runs on
    /// another thread goes on.
    virtual void cancelDownloads() = 0;

    /// The hash of a local video file; none when it cannot be read or hashed. Blocks for a short read, at
    /// most two seconds on a disk and never on a pipe or device.
    static std::optional<VideoHash> hashFor(const QUrl &url);

protected:
    /// Implement `hashFor` and `VideoFileUtilities::componentsFrom` for the shared service. Services that are
    /// only asked by another one need neither.
    virtual std::optional<VideoHash> computeHash(const QUrl &) { return std::nullopt; }
    virtual VideoFileComponents componentsOf(const QUrl &) { return {}; }
    friend struct VideoFileUtilities;
};

struct VideoFileUtilities
{
    /// The parts of a video file's name; the file itself is not read.
    static VideoFileComponents componentsFrom(const QUrl &url);
};
