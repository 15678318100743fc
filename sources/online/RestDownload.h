#pragma once
#include "RestQuota.h"
#include "RestSession.h"

#include <base/DownloadFolder.h>
#include <base/WorkerThread.h>
#include <media/subtitles/SubtitleFile.h>
#include <model/SubtitleService.h>
#include <net/DiskCache.h>

#include <QHash>

/// Fetches files: an order, which costs one download, then the transfer of its link, which does not. Fetched
/// files and valid links are kept by file id, so that choosing a subtitle again costs nothing. Main thread
/// only.
class RestDownload final
{
public:
    using Completion = SubtitleService::DownloadCompletion;

    struct Tools
    {
        RequestQueue &queue;
        WorkerThread &worker;
        DiskCache kept;
        DownloadFolder downloads;
    };

    RestDownload(const Tools &tools, std::shared_ptr<RestSession> session);
    ~RestDownload();

    /// For new requests; running ones keep their session.
    void use(std::shared_ptr<RestSession> session);
    void setKeepsOriginalBytes(bool keeps) { m_keepsOriginalBytes = keeps; }
    /// The completion is called on a later turn of the main thread. A file of another service than the
    /// session's is not ordered; it must be in the cache.
    void fetch(const SubtitlePtr &subtitle, Completion completion);
    /// Calls the completion on a later turn, unless `cancelAll` comes before.
    void answer(const Completion &completion, const Result<QUrl> &file);
    /// Cancels running fetches, except an order that may have been counted already: its link is kept. No
    /// completion is called any more.
    void cancelAll();

    /// The quotas of the present session are reported to the observer.
    void takeQuota(RestSession &session, const RestQuota &quota);
    void setQuotaObserver(std::function<void(const RestQuota &)> observer)
    {
        m_observer = std::move(observer);
    }

private:
    struct Job;
    /// The session and the file id.
    using JobKey = std::pair<const RestSession *, QString>;
    /// Whether a link can be used again once its file is published.
    enum class LinkUse
    {
        Spent,
        StillWanted
    };
    struct Link
    {
        QUrl url;
        Clock::Duration ends{0};
        QDateTime endDate; // also advances during a suspend
    };

    void lookUp(const std::shared_ptr<Job> &job);
    void order(const std::shared_ptr<Job> &job);
    void takeOrder(const std::shared_ptr<Job> &job, const Result<HttpAnswer> &outcome);
    void transfer(const std::shared_ptr<Job> &job, const QUrl &link);
    void takeTransfer(const std::shared_ptr<Job> &job, const HttpResult &outcome);
    void keep(const std::shared_ptr<Job> &job, const QByteArray &bytes);
    void publish(const std::shared_ptr<Job> &job, const SubtitleFile &file, LinkUse link);
    void askForQuota(const std::shared_ptr<Job> &job, const base::Error &error);
    void takeCost(const std::shared_ptr<Job> &job, const Result<HttpAnswer> &outcome);
    void finish(const std::shared_ptr<Job> &job, const Result<QList<QUrl>> &files);
    void forget(const Job &job);
    void tell(Job &job, const Result<QList<QUrl>> &files);

    Tools m_tools;
    std::shared_ptr<RestSession> m_session;
    bool m_keepsOriginalBytes = false;
    std::function<void(const RestQuota &)> m_observer;
    std::unique_ptr<QObject> m_answers; // the context of the answers on the main queue
    QHash<JobKey, std::shared_ptr<Job>> m_jobs;
    QHash<QString, Link> m_links; // ordered but not yet fetched; by file id
};
