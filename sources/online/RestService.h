#pragma once
#include "RestDownload.h"
#include "RestLanguageKeeper.h"
#include "RestSearch.h"
#include "RestSettings.h"

#include <media/names/VideoNames.h>
#include <model/SubtitleService.h>

/// The result of a connection test.
struct RestReport
{
    bool isLoggedIn = false;
    RestQuota quota;
};

/// The public subtitle service. Lives on the main thread and never blocks it; completions are called there.
class RestService final : public SubtitleService
{
public:
    struct Places
    {
        QString cache;     // of search answers
        QString downloads; // where published and cached files are
        static Places standard();
    };

    /// `names` maps hashes to names; the code that hashes a file fills it.
    RestService(Clock &clock, const RestSettings &settings, std::shared_ptr<VideoNames> names,
                const Places &places = Places::standard());
    ~RestService() override;

    /// For new requests; running ones keep their settings.
    void setSettings(const RestSettings &settings);
    const RestSettings &settings() const { return m_settings; }
    bool hasKey() const { return !settings().apiKey.isEmpty(); }

    void query(const QList<Arg> &args, QueryCompletion completion) override;
    void cancelQueryTask() override;
    void download(const SubtitlePtr &subtitle, DownloadCompletion completion) override;
    void cancelDownloads() override;

    /// Tests the key and, if there is one, the login; reports the remaining downloads.
    void testConnection(std::function<void(Result<RestReport>)> completion);
    const RestQuota &quota() const { return m_session->quota(); }
    /// Called on the main thread when the service reports the remaining downloads.
    void setQuotaObserver(std::function<void(const RestQuota &)> observer)
    {
        m_download.setQuotaObserver(std::move(observer));
    }
    /// Called on the main thread with the length of a pause that requests wait for because of a rate refusal,
    /// and with none once no request waits.
    void setPauseObserver(RequestQueue::PauseObserver observer)
    {
        m_queue.setPauseObserver(std::move(observer));
    }
    /// From now on the service's own list of languages is used; searches keep it up to date.
    void followLanguages() { m_languages.follow(); }
    void emptyCache();
    /// Logs out of every session; `done` is called within three seconds.
    void shutDown(const std::function<void()> &done);

private:
    Result<RestReport> reportOf(RestSession &session, const Result<HttpAnswer> &outcome);

    std::shared_ptr<VideoNames> m_names;
    DiskCache m_cache;
    RequestQueue m_queue;
    std::shared_ptr<RestLogins> m_logins;
    RestSettings m_settings;
    std::shared_ptr<RestSession> m_session;        // for new requests
    QList<std::shared_ptr<RestSession>> m_former;  // of other settings; logged in, or with running requests
    QList<std::shared_ptr<RestSession>> m_leaving; // sessions that are logging out
    std::unique_ptr<WorkerThread> m_worker;
    RestDownload m_download;
    RestLanguageKeeper m_languages;
    QHash<quint64, std::shared_ptr<RestSearch>> m_searches; // not yet answered
    quint64 m_lastQuery = 0;
    HttpCall m_test;
};
