#pragma once
#include "RestQuota.h"
#include "RestSession.h"

#include <base/DownloadFolder.h>
#include <base/WorkerThread.h>
#include <media/subtitles/SubtitleFile.h>
#include <model/SubtitleService.h>
#include <net/DiskCache.h>

#include <QHash>

/// Fetches files: an order, which costs one download, then the transfer of its link, which does not. What was
/// fetched is kept by file id, and so is a link while it is good, so that choosing a subtitle again costs
/// nothing. Main thread only.
class RestDownload final
{
public:
    using Completion = SubtitleService::DownloadCompletion;

    struct Tools
    {
        Transport &transport;
        WorkerThread &worker;
        DiskCache kept;
        DownloadFolder downloads;
    };

    RestDownload(const Tools &tools, std::shared_ptr<RestSession> session);
    ~RestDownload();

    /// For the files asked for from now on; what is under way ends in the session it began in.
    void use(std::shared_ptr<RestSession> session);
    void setKeepsOriginalBytes(bool keeps) { m_keepsOriginalBytes = keeps; }
    /// The answer comes on a later turn of the main thread. A file of another service than the session's is
    /// not ordered; it is to be had where it was fetched before.
    void fetch(const SubtitlePtr &subtitle, Completion completion);
    /// Ends what is under way, except an order that may have been counted already: its link is kept for the
    /// next time. A completion that is on its way through the main queue still comes.
    void cancelAll();

    /// Those of the present session are told to the observer.
    void takeQuota(RestSession &session, const RestQuota &quota);
    void setQuotaObserver(std::function<void(const RestQuota &)> observer)
    {
        m_observer = std::move(observer);
    }

private:
    struct Job;
    /// Who asks for which file.
    using JobKey = std::pair<const RestSession *, QString>;
    /// What a link is good for once its file is published.
    enum class LinkUse
    {
        Spent,
        StillWanted
    };
    struct Link
    {
        QUrl url;
        Clock::Duration ends{0};
        QDateTime endDate; // also moves while the machine sleeps
    };

    void lookUp(const std::shared_ptr<Job> &job);
    void order(const std::shared_ptr<Job> &job);
    void takeOrder(const std::shared_ptr<Job> &job, const Result<HttpAnswer> &outcome);
    void transfer(const std::shared_ptr<Job> &job, const QUrl &link);
    void takeTransfer(const std::shared_ptr<Job> &job, const Result<HttpAnswer> &outcome);
    void keep(const std::shared_ptr<Job> &job, const QByteArray &bytes);
    void publish(const std::shared_ptr<Job> &job, const SubtitleFile &file, LinkUse link);
    void askForQuota(const std::shared_ptr<Job> &job, const Error &error);
    void takeCost(const std::shared_ptr<Job> &job, const Result<HttpAnswer> &outcome);
    void finish(const std::shared_ptr<Job> &job, const Result<QList<QUrl>> &files);
    void forget(const Job &job);
    void tell(Job &job, const Result<QList<QUrl>> &files);

    Tools m_tools;
    std::shared_ptr<RestSession> m_session;
    bool m_keepsOriginalBytes = false;
    std::function<void(const RestQuota &)> m_observer;
    QHash<JobKey, std::shared_ptr<Job>> m_jobs;
    QHash<QString, Link> m_links; // ordered, not yet fetched to satisfaction; by the file's id
};
