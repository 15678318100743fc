#include "RestService.h"

#include "RestErrors.h"
#include "RestQuery.h"

#include <base/WorkerThread.h>
#include <base/LocalizedString.h>
#include <net/Json.h>
#include <net/WhileAlive.h>

#include <QStandardPaths>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr std::size_t RequestsPerSpan = 4; // the service allows five
constexpr Clock::Duration RateSpan = 1050ms;
constexpr std::chrono::hours AnswersKeptFor = 24h;
constexpr std::chrono::hours FilesKeptFor = 7 * 24h;
constexpr std::chrono::hours LanguagesKeptFor = 90 * 24h; // an old list is better than none
constexpr qint64 MaxCacheBytes = 64LL * 1024 * 1024;

base::Error noKey()
{
    base::Error error = serviceError(ServiceFailure::KeyRefused, ServiceName::Subtitles, u"no key is set"_s);
    error.localizedDescription =
        String::localize(u"The subtitle service wants an API key. Enter one in the preferences."_s);
    return error;
}
} // namespace

RestService::Places RestService::Places::standard()
{
    const QString cache =
        QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/Plovendix"_L1;
    return {cache + "/searches"_L1, DownloadFolder::standardPath()};
}

RestService::RestService(Clock &clock, const RestSettings &settings, std::shared_ptr<VideoNames> names,
                         const Places &places)
    : m_names(std::move(names)),
      m_cache(places.cache, AnswersKeptFor),
      m_queue(clock, {RequestsPerSpan, RateSpan}),
      m_logins(std::make_shared<RestLogins>(clock)),
      m_settings(settings),
      m_session(std::make_shared<RestSession>(m_queue, m_logins, settings)),
      m_worker(std::make_unique<WorkerThread>()),
      m_download({m_queue, *m_worker, DiskCache(places.downloads + "/kept"_L1, FilesKeptFor),
                  DownloadFolder(places.downloads)},
                 m_session),
      m_languages({*m_worker, clock, DiskCache(places.cache + "/languages"_L1, LanguagesKeptFor)}, m_session)
{
    m_download.setKeepsOriginalBytes(settings.keepsOriginalBytes);
    m_worker->post([cache = m_cache, kept = DiskCache(places.downloads + "/kept"_L1, FilesKeptFor),
                    downloads = DownloadFolder(places.downloads)] {
        const QDateTime date = QDateTime::currentDateTimeUtc(); // file dates follow the system clock
        cache.prune(date, MaxCacheBytes);
        kept.prune(date, MaxCacheBytes);
        downloads.clearOlderThan(FilesKeptFor);
    });
}

RestService::~RestService()
{
    m_searches.clear();
    m_worker.reset();
}

void RestService::setSettings(const RestSettings &settings)
{
    const RestAccess &access = settings;
    const bool isOther = access != m_settings;
    m_settings = settings;
    m_download.setKeepsOriginalBytes(settings.keepsOriginalBytes);
    if (!isOther)
        return;
    m_former += std::exchange(m_session, std::make_shared<RestSession>(m_queue, m_logins, access));
    m_download.use(m_session);
    m_languages.use(m_session);
    m_former.removeIf([](const auto &former) { return former.use_count() == 1 && !former->isLoggedIn(); });
}

void RestService::query(const QList<Arg> &args, QueryCompletion completion)
{
    const auto nameOf = [this](const VideoHash &video) {
        return m_names ? m_names->nameOf(video) : QString();
    };
    const Result<RestURL::Parameters> query =
        hasKey() ? queryParameters(args, nameOf, settings().asksForMachineTranslated, m_languages.list())
                 : noKey();
    const quint64 number = ++m_lastQuery;
    const auto search = std::make_shared<RestSearch>(
        RestSearch::Tools{m_session, *m_worker, m_queue.clock(), m_cache},
        query ? *query : RestURL::Parameters(),
        [this, number, completion = std::move(completion)](const Result<QueryResult> &result) {
            m_searches.remove(number);
            completion(result);
        });
    m_searches.insert(number, search);
    if (query)
        search->start();
    else
        MainQueue::shared().async(
            whileAlive(search, [error = query.error()](const auto &held) { held->fail(error); }));
    if (hasKey())
        m_languages.noteSearch();
}

void RestService::cancelQueryTask()
{
    m_searches.clear();
}

void RestService::download(const SubtitlePtr &subtitle, DownloadCompletion completion)
{
    if (hasKey())
        m_download.fetch(subtitle, std::move(completion));
    else
        m_download.answer(completion, noKey());
}

void RestService::cancelDownloads()
{
    m_download.cancelAll();
}

void RestService::testConnection(std::function<void(Result<RestReport>)> completion)
{
    if (!hasKey()) {
        MainQueue::shared().async([completion = std::move(completion)] { completion(noKey()); });
        return;
    }
    const RestURL::Parameters sample{{u"languages"_s, u"en"_s}, {u"query"_s, u"lighthouse"_s}};
    const bool hasAccount = settings().hasAccount();
    const RestSession::Request request{HttpRequest::Method::Get,
                                       hasAccount ? u"/infos/user"_s : u"/subtitles"_s,
                                       hasAccount ? RestURL::Parameters() : sample};
    m_test = m_session->send(request, RestSession::Login::Wanted,
                             [this, session = m_session.get(),
                              completion = std::move(completion)](const Result<HttpAnswer> &outcome) {
                                 const Result<RestReport> report = reportOf(*session, outcome);
                                 MainQueue::shared().async([completion, report] { completion(report); });
                             });
}

Result<RestReport> RestService::reportOf(RestSession &session, const Result<HttpAnswer> &outcome)
{
    if (!outcome)
        return outcome.error();
    if (!outcome->isSuccess())
        return RestErrors::error(*outcome);
    const std::optional<QJsonObject> object = Json::object(outcome->body);
    if (!object || !object->contains(u"data"_s))
        return serviceError(ServiceFailure::BadAnswer, ServiceName::Subtitles, u"no data"_s);
    if (session.isLoggedIn()) {
        RestQuota quota = session.quota();
        quota.takeUser((*object)[u"data"_s].toObject());
        m_download.takeQuota(session, quota);
    }
    return RestReport{session.isLoggedIn(), session.quota()};
}

void RestService::emptyCache()
{
    m_worker->post([cache = m_cache] { cache.clear(); });
}

void RestService::shutDown(const std::function<void()> &done)
{
    m_leaving = std::exchange(m_former, {}) << m_session;
    const auto missing = std::make_shared<qsizetype>(m_leaving.size());
    for (const std::shared_ptr<RestSession> &session : std::as_const(m_leaving)) {
        session->logOut([missing, done] {
            if (--*missing == 0)
                done();
        });
    }
}
