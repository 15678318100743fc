#pragma once
#include "RestQuota.h"
#include "RestSession.h"

#include <search/api/SubtitleService.h>
#include <services/net/DiskCache.h>
#include <services/support/DownloadFolder.h>
#include <services/support/WorkerThread.h>
#include <services/subtitlefile/SubtitleFile.h>

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
        RestSession &session;
        Transport &transport;
        WorkerThread &worker;
        DiskCache kept;
        DownloadFolder downloads;
    };

    explicit RestDownload(const Tools &tools);
    ~RestDownload();

    /// The answer comes on a later turn of the main thread.
    void fetch(const SubtitlePtr &subtitle, Completion completion);

    const RestQuota &quota() const { return m_quota; }
    void setQuota(const RestQuota &quota);
    /// Somebody else is asking from now on.
    void forgetQuota() { setQuota({}); }
    void setQuotaObserver(std::function<void(const RestQuota &)> observer)
    {
        m_observer = std::move(observer);
    }

private:
    struct Job;
    struct Link
    {
        QUrl url;
        Clock::Duration ends{0};
        QDateTime endDate; // also moves while the machine sleeps
    };

    void lookUp(const std::shared_ptr<Job> &job);
    void order(const std::shared_ptr<Job> &job);
    void takeOrder(const std::shared_ptr<Job> &job, const Result<HttpAnswer> &outcome);
    Error limitReached(const QString &detail) const;
    Result<QUrl> linkFrom(const HttpAnswer &answer);
    void transfer(const std::shared_ptr<Job> &job, const QUrl &link);
    void takeTransfer(const std::shared_ptr<Job> &job, const Result<HttpAnswer> &outcome);
    void keep(const std::shared_ptr<Job> &job, const QByteArray &bytes);
    void publish(const std::shared_ptr<Job> &job, const SubtitleFile &file);
    void askForQuota(const std::shared_ptr<Job> &job, const Error &error);
    void finish(const std::shared_ptr<Job> &job, const Result<QList<QUrl>> &files);

    Tools m_tools;
    RestQuota m_quota;
    std::function<void(const RestQuota &)> m_observer;
    QHash<QString, std::shared_ptr<Job>> m_jobs; // by file id
    QHash<QString, Link> m_links;                // ordered, not yet fetched to satisfaction
};
