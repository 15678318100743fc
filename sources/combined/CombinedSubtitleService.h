#pragma once
#include "Ranking.h"

#include <base/WorkerThread.h>
#include <media/names/VideoNames.h>
#include <model/OutstandingQueries.h>
#include <model/SubtitleService.h>

#include <QMap>

/// Combines several subtitle services: asks them side by side and gives one answer, never before the call has
/// returned and never after a cancel. Does not replace a query by another one. A query by words that follows
/// directly on a query by hash skips sources that have just timed out or refused the key. Functions are
/// called on the main thread; a worker thread calls completions of queries, and the service's own thread
/// those of downloads.
class CombinedSubtitleService final : public SubtitleService
{
public:
    struct Source
    {
        QString name; // the value of `Subtitle::service` in its results
        std::shared_ptr<SubtitleService> service;
        std::function<bool()> isAsked; // empty for always
    };

    /// `names` is shared with services that need a video's name; `preferences` is read for each query. When
    /// two sources have the same subtitle, the first one is used.
    CombinedSubtitleService(const QList<Source> &sources, std::shared_ptr<VideoNames> names,
                            std::function<RankingPreferences()> preferences);
    ~CombinedSubtitleService() override;

    using Failures = QMap<QString, base::Error>; // by source
    /// The parts that a successful answer lacks.
    struct Gaps
    {
        Failures failures;  // of the sources without a part in the answer; mostly empty
        qint64 leftOut = 0; // rows beyond those given
    };
    using GapsObserver = std::function<void(const Gaps &)>;
    /// Called on the main queue before the blocks that the completion queues.
    void setGapsObserver(GapsObserver observer) { m_onMainThread->gapsObserver = std::move(observer); }

    /// Holds queries back until `release`, while the available sources are not known yet.
    void hold() { m_isHeld = true; }
    void release();

    void query(const QList<Arg> &args, QueryCompletion completion) override;
    void cancelQueryTask() override;
    void download(const SubtitlePtr &subtitle, DownloadCompletion completion) override;
    void cancelDownloads() override;

protected:
    std::optional<VideoHash> computeHash(const QUrl &url) override;
    VideoFileComponents componentsOf(const QUrl &url) override;

private:
    class Search;
    /// Used by blocks on the main queue, which may outlive the service.
    struct MainThreadState
    {
        GapsObserver gapsObserver;
        Failures outOfReach; // for a query by words that follows directly on the answered one by hash
    };

    void start(quint64 number, const QList<Arg> &args, const QueryCompletion &completion);
    QString videoName(const QList<Arg> &args) const;

    const QList<Source> m_sources;
    std::shared_ptr<VideoNames> m_names;
    std::function<RankingPreferences()> m_preferences;
    std::shared_ptr<OutstandingQueries> m_outstanding = std::make_shared<OutstandingQueries>();
    std::shared_ptr<WorkerThread> m_worker = std::make_shared<WorkerThread>();
    const std::shared_ptr<MainThreadState> m_onMainThread = std::make_shared<MainThreadState>();
    std::stop_source m_stop; // ends the work for outstanding queries
    bool m_isHeld = false;
    std::vector<std::function<void()>> m_held;
};
