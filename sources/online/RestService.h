#pragma once
#include "RestDownload.h"
#include "RestLanguageKeeper.h"
#include "RestSearch.h"
#include "RestSettings.h"

#include <media/names/VideoNames.h>
#include <model/SubtitleService.h>

/// What a test of the connection found out.
struct RestReport
{
    bool isLoggedIn = false;
    RestQuota quota;
};

/// The public subtitle service. Lives on the main thread, which never waits for it; completions arrive there,
/// too.
class RestService final : public SubtitleService
{
public:
    struct Places
    {
        QString cache;     // of search answers
        QString downloads; // where files land and are kept
        static Places standard();
    };

    /// `names` remembers the name that belongs to a hash, filled by whoever hashes.
    RestService(Clock &clock, const RestSettings &settings, std::shared_ptr<VideoNames> names,
                const Places &places = Places::standard());
    ~RestService() override;

    /// For what is asked from now on: a search, a download or a test under way ends by the settings it began
    /// with.
    void setSettings(const RestSettings &settings);
    const RestSettings &settings() const { return m_settings; }
    bool hasKey() const { return !settings().apiKey.isEmpty(); }

    void query(const QList<Arg> &args, QueryCompletion completion) override;
    void cancelQueryTask() override;
    void download(const SubtitlePtr &subtitle, DownloadCompletion completion) override;
    void cancelDownloads() override;

    /// Whether key and, if there is one, login are accepted, and the downloads left.
    void testConnection(std::function<void(Result<RestReport>)> completion);
    const RestQuota &quota() const { return m_session->quota(); }
    /// Called on the main thread whenever the service has said something new about the downloads left.
    void setQuotaObserver(std::function<void(const RestQuota &)> observer);
    /// Called on the main thread with the length of a pause that requests wait for because the service gets
    /// too many, and with nothing once none waits any more.
    void setPauseObserver(Transport::PauseObserver observer)
    {
        m_transport.setPauseObserver(std::move(observer));
    }
    /// From now on the service's own list of languages counts, which searches keep up to date.
    void followLanguages() { m_languages.follow(); }
    void emptyCache();
    /// Logs out wherever we logged in; `done` comes after three seconds at the latest.
    void shutDown(const std::function<void()> &done);

protected:
    std::optional<VideoHash> computeHash(const QUrl &url) override;
    VideoFileComponents componentsOf(const QUrl &url) override;

private:
    void answer(quint64 number, const Result<QueryResult> &result);
    void refuse(quint64 number, const Error &error);
    void finishTest(RestSession &session, const std::function<void(Result<RestReport>)> &completion,
                    const Result<HttpAnswer> &outcome);

    struct Query
    {
        QueryCompletion completion;
        std::shared_ptr<RestSearch> search;
    };

    std::shared_ptr<VideoNames> m_names;
    DiskCache m_cache;
    Transport m_transport;
    std::shared_ptr<RestLogins> m_logins;
    RestSettings m_settings;
    std::shared_ptr<RestSession> m_session;        // for what is asked next
    QList<std::shared_ptr<RestSession>> m_former;  // of other settings; logged in, or something is under way
    QList<std::shared_ptr<RestSession>> m_leaving; // log out
    std::unique_ptr<WorkerThread> m_worker;
    RestDownload m_download;
    RestLanguageKeeper m_languages;
    QHash<quint64, Query> m_queries; // not yet answered
    quint64 m_lastQuery = 0;
    quint64 m_cancelledUpTo = 0;
    quint64 m_lastDownload = 0;
    quint64 m_downloadsCancelledUpTo = 0;
    RestSession::Call m_test;
    std::shared_ptr<RestService *> m_alive; // tells blocks on the main queue whether we still are
};
