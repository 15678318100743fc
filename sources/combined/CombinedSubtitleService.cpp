#include "CombinedSubtitleService.h"

#include <base/LocalizedString.h>
#include <base/MainQueue.h>
#include <media/names/FileNameParser.h>
#include <net/ServiceError.h>

using namespace Qt::StringLiterals;

namespace
{
base::Error unknownService(const QString &name)
{
    return {u"Service"_s, 0, String::localize(u"The service this subtitle came from is not in use now."_s),
            u"no service named "_s + name};
}

QString valueOf(const QList<Arg> &args, Param param)
{
    for (const Arg &arg : args) {
        if (arg.param == param)
            return arg.value;
    }
    return {};
}

QStringList namesOf(const QList<CombinedSubtitleService::Source> &sources)
{
    QStringList names;
    for (const CombinedSubtitleService::Source &source : sources)
        names += source.name;
    return names;
}

CombinedSubtitleService::Failures failuresIn(const CombinedQuery &query, const QStringList &sources)
{
    CombinedSubtitleService::Failures failures;
    for (qsizetype i = 0; i < sources.size(); ++i) {
        if (const std::optional<base::Error> failure = query.failureOf(i))
            failures.insert(sources[i], *failure);
    }
    return failures;
}

CombinedQuery::Asked waysOf(const QList<Arg> &args)
{
    return valueOf(args, Param::movieHash).isEmpty() ? CombinedQuery::Asked::ByWords
                                                     : CombinedQuery::Asked::ByHash;
}

/// The failures that the next query would wait for and meet again.
CombinedSubtitleService::Failures outOfReach(const CombinedSubtitleService::Failures &failures)
{
    CombinedSubtitleService::Failures kept;
    for (auto it = failures.cbegin(); it != failures.cend(); ++it) {
        const std::optional<ServiceFailure> kind = kindOf(*it);
        if (kind == ServiceFailure::Timeout || kind == ServiceFailure::KeyRefused)
            kept.insert(it.key(), *it);
    }
    return kept;
}
} // namespace

CombinedSubtitleService::CombinedSubtitleService(const QList<Source> &sources,
                                                 std::shared_ptr<VideoNames> names,
                                                 std::function<RankingPreferences()> preferences)
    : m_sources(sources),
      m_names(std::move(names)),
      m_preferences(std::move(preferences)),
      m_outstanding(std::make_shared<OutstandingQueries>()),
      m_worker(std::make_shared<WorkerThread>())
{
}

CombinedSubtitleService::~CombinedSubtitleService()
{
    m_stop.request_stop();
    m_outstanding->cancelAll();
}

QList<CombinedSubtitleService::Source> CombinedSubtitleService::askedSources() const
{
    QList<Source> asked;
    for (const Source &source : m_sources) {
        if (!source.isAsked || source.isAsked())
            asked += source;
    }
    return asked;
}

QString CombinedSubtitleService::videoName(const QList<Arg> &args) const
{
    const QString hash = valueOf(args, Param::movieHash);
    if (hash.isEmpty())
        return valueOf(args, Param::text);
    return m_names->nameOf({hash, valueOf(args, Param::byteSize).toULongLong()});
}

void CombinedSubtitleService::query(const QList<Arg> &args, QueryCompletion completion)
{
    const quint64 number = m_outstanding->begin();
    if (m_isHeld) {
        m_held.emplace_back(
            [=, this, completion = std::move(completion)] { start(number, args, completion); });
        return;
    }
    start(number, args, std::move(completion));
}

void CombinedSubtitleService::release()
{
    m_isHeld = false;
    for (const auto &begin : std::exchange(m_held, {}))
        begin();
}

void CombinedSubtitleService::start(quint64 number, const QList<Arg> &args, QueryCompletion completion)
{
    const QList<Source> asked = askedSources();
    const CombinedQuery::Asked ways = waysOf(args);
    const auto combined =
        std::make_shared<CombinedQuery>(asked.size(), ways, videoName(args), m_preferences());
    const auto give = [ways, completion = std::move(completion), observer = m_gapsObserver,
                       memory = m_outOfReach](const Result<QueryResult> &outcome, const Failures &failures) {
        const bool leadsToWords =
            outcome && ways == CombinedQuery::Asked::ByHash && outcome->subtitles->isEmpty();
        if (outcome)
            MainQueue::shared().async([=, gaps = Gaps{failures, outcome->leftOut}] {
                *memory = leadsToWords ? outOfReach(gaps.failures) : Failures();
                if (observer)
                    observer(gaps);
            });
        completion(outcome);
        // Queued after the completion's own blocks: later queries ask every source again.
        if (leadsToWords)
            MainQueue::shared().async([memory] { memory->clear(); });
    };
    const auto finish = [number, combined, give, names = namesOf(asked), outstanding = m_outstanding,
                         stop = m_stop.get_token(), weak = std::weak_ptr(m_worker)] {
        const auto worker = weak.lock();
        if (!worker)
            return;
        worker->post([=] {
            if (!outstanding->isOutstanding(number))
                return;
            const Result<QueryResult> outcome = combined->outcome(stop);
            outstanding->finish(number, [&] { give(outcome, failuresIn(*combined, names)); });
        });
    };
    if (asked.isEmpty())
        MainQueue::shared().async(finish);
    const Failures known = ways == CombinedQuery::Asked::ByWords ? *m_outOfReach : Failures();
    for (qsizetype i = 0; i < asked.size(); ++i) {
        const auto take = [i, combined, finish](const Result<QueryResult> &answer) {
            if (combined->take(i, answer))
                finish();
        };
        if (const auto failure = known.constFind(asked[i].name); failure != known.constEnd())
            take(*failure);
        else
            asked[i].service->query(args, take);
    }
}

void CombinedSubtitleService::cancelQueryTask()
{
    m_held.clear();
    m_outOfReach->clear();
    m_stop.request_stop();
    m_stop = std::stop_source();
    m_outstanding->cancelAll();
    for (const Source &source : m_sources)
        source.service->cancelQueryTask();
}

void CombinedSubtitleService::download(const SubtitlePtr &subtitle, DownloadCompletion completion)
{
    for (const Source &source : m_sources) {
        if (source.name == subtitle->service) {
            source.service->download(subtitle, std::move(completion));
            return;
        }
    }
    MainQueue::shared().async(
        [completion = std::move(completion), name = subtitle->service] { completion(unknownService(name)); });
}

void CombinedSubtitleService::cancelDownloads()
{
    for (const Source &source : m_sources)
        source.service->cancelDownloads();
}

std::optional<VideoHash> CombinedSubtitleService::computeHash(const QUrl &url)
{
    return m_names->hash(url);
}

VideoFileComponents CombinedSubtitleService::componentsOf(const QUrl &url)
{
    return videoFileComponents(url);
}
