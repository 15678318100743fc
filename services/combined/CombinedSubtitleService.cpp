#include "CombinedSubtitleService.h"

#include <platform/LocalizedString.h>
#include <platform/MainQueue.h>
#include <services/video/FileNameParser.h>

using namespace Qt::StringLiterals;

namespace
{
Error unknownService(const QString &name)
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

QMap<QString, Error> failuresIn(const CombinedQuery &query, const QStringList &sources)
{
    QMap<QString, Error> failures;
    for (qsizetype i = 0; i < sources.size(); ++i) {
        if (const std::optional<Error> failure = query.failureOf(i))
            failures.insert(sources[i], *failure);
    }
    return failures;
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
    const auto combined = std::make_shared<CombinedQuery>(asked.size(), videoName(args), m_preferences());
    const auto finish = [number, combined, names = namesOf(asked), completion = std::move(completion),
                         observer = m_failuresObserver, outstanding = m_outstanding,
                         weak = std::weak_ptr(m_worker)] {
        if (const auto worker = weak.lock()) {
            worker->post([=] {
                if (!outstanding->isOutstanding(number))
                    return;
                const Result<QueryResult> outcome = combined->outcome();
                outstanding->finish(number, [&] {
                    if (observer && outcome)
                        MainQueue::shared().async(
                            [observer, failures = failuresIn(*combined, names)] { observer(failures); });
                    completion(outcome);
                });
            });
        }
    };
    if (asked.isEmpty())
        MainQueue::shared().async(finish);
    for (qsizetype i = 0; i < asked.size(); ++i) {
        asked[i].service->query(args, [i, combined, finish](const Result<QueryResult> &answer) {
            if (combined->take(i, answer))
                finish();
        });
    }
}

void CombinedSubtitleService::cancelQueryTask()
{
    m_held.clear();
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
