#pragma once
#include "CombinedQuery.h"

#include <base/WorkerThread.h>
#include <media/names/VideoNames.h>
#include <model/OutstandingQueries.h>

#include <QMap>

/// Several subtitle services as one: asks them side by side and gives one answer, never before the call has
/// returned, none once cancelled. Falls back on nothing: a query stays what it is. A query by words that
/// follows at once on a query by hash does not ask a source again that has just timed out or refused the key.
/// Functions are called on the main thread; completions of queries arrive on a thread of its own, those of
/// downloads wherever the service gives them.
class CombinedSubtitleService final : public SubtitleService
{
public:
    struct Source
    {
        QString name; // what `Subtitle::service` says of its results
        std::shared_ptr<SubtitleService> service;
        std::function<bool()> isAsked; // empty for always
    };

    /// `names` is shared with the services that want to know a video's name; `preferences` is asked for each
    /// query. The first source wins where two have the same subtitle.
    CombinedSubtitleService(const QList<Source> &sources, std::shared_ptr<VideoNames> names,
                            std::function<RankingPreferences()> preferences);
    ~CombinedSubtitleService() override;

    using Failures = QMap<QString, Error>; // by source
    /// What an answer that is no failure lacks.
    struct Gaps
    {
        Failures failures;  // of the sources that have no part in it; mostly none
        qint64 leftOut = 0; // rows beyond those given
    };
    using GapsObserver = std::function<void(const Gaps &)>;
    /// Called on the main queue before the completion. Set it before the first query.
    void setGapsObserver(GapsObserver observer) { m_gapsObserver = std::move(observer); }

    /// Keeps queries back until `release`: for the time in which nobody knows yet who is to be asked.
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
    void start(quint64 number, const QList<Arg> &args, QueryCompletion completion);
    QList<Source> askedSources() const;
    QString videoName(const QList<Arg> &args) const;

    const QList<Source> m_sources;
    std::shared_ptr<VideoNames> m_names;
    std::function<RankingPreferences()> m_preferences;
    std::shared_ptr<OutstandingQueries> m_outstanding;
    std::shared_ptr<WorkerThread> m_worker;
    GapsObserver m_gapsObserver;
    const std::shared_ptr<Failures> m_outOfReach =
        std::make_shared<Failures>(); // for the query by words that follows at once; main thread
    std::stop_source m_stop;          // ends the work for outstanding queries
    bool m_isHeld = false;
    std::vector<std::function<void()>> m_held;
};
