#include "CombinedSubtitleService.h"

#include <base/LocalizedString.h>
#include <base/MainQueue.h>
#include <media/names/FileNameParser.h>
#include <net/ServiceError.h>

#include <QLoggingCategory>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services", QtInfoMsg)

using Failures = CombinedSubtitleService::Failures;

base::Error unknownService(const QString &name)
{
    return {u"Service"_s, 0, String::localize(u"The service this subtitle came from is not in use now."_s),
            u"no service named "_s + name};
}

QString valueOf(const QList<Arg> &args, Param param)
{
    const auto found =
        std::find_if(args.begin(), args.end(), [param](const Arg &arg) { return arg.param == param; });
    return found == args.end() ? QString() : found->value;
}

/// The failures that the next query would wait for and meet again.
Failures outOfReach(const Failures &failures)
{
    Failures kept;
    for (auto it = failures.cbegin(); it != failures.cend(); ++it) {
        const std::optional<ServiceFailure> kind = kindOf(*it);
        if (kind == ServiceFailure::Timeout || kind == ServiceFailure::KeyRefused)
            kept.insert(it.key(), *it);
    }
    return kept;
}
} // namespace

/// One query and its answers, which may come on any thread and after the service.
class CombinedSubtitleService::Search final : public std::enable_shared_from_this<Search>
{
public:
    struct Question
    {
        quint64 number = 0;
        bool isByHash = false;
        QString videoName;
        RankingPreferences preferences;
        QueryCompletion completion;
    };

    Search(const CombinedSubtitleService &service, Question question, const QList<Source> &sources)
        : m_question(std::move(question)),
          m_answers(static_cast<std::size_t>(sources.size())),
          m_outstanding(service.m_outstanding),
          m_onMainThread(service.m_onMainThread),
          m_worker(service.m_worker),
          m_stop(service.m_stop.get_token())
    {
        for (const Source &source : sources)
            m_sources += source.name;
    }

    /// Only the first answer of each source counts. The last one ends the search.
    void take(qsizetype source, const Result<QueryResult> &answer)
    {
        const std::scoped_lock lock(m_mutex);
        std::optional<Result<QueryResult>> &place = m_answers[static_cast<std::size_t>(source)];
        if (place)
            return;
        place = answer;
        if (++m_answered == m_answers.size())
            finish();
    }

    /// Ranks and answers on the worker.
    void finish()
    {
        const auto worker = m_worker.lock();
        if (!worker)
            return;
        worker->post([self = shared_from_this()] {
            if (!self->m_outstanding->isOutstanding(self->m_question.number))
                return;
            Failures failures;
            const Result<QueryResult> outcome = self->outcome(failures);
            self->m_outstanding->finish(self->m_question.number, [&] { self->give(outcome, failures); });
        });
    }

private:
    /// Fails only if no source returned rows, and not even then if the first service (the one on this
    /// machine) answered a query by hash: an empty list lets the words of the file's name be tried. Rows that
    /// match the hash come first, each subtitle once. Useless when stopped meanwhile.
    Result<QueryResult> outcome(Failures &failures) const
    {
        QList<SubtitlePtr> rows;
        qint64 leftOut = 0;
        std::optional<base::Error> firstFailure;
        for (std::size_t i = 0; i < m_answers.size(); ++i) {
            const Result<QueryResult> &answer = *m_answers[i];
            if (answer) {
                rows += answer->subtitles.value_or(QList<SubtitlePtr>());
                leftOut += answer->leftOut;
                continue;
            }
            const base::Error &failure = answer.error();
            qCWarning(log).noquote() << "a service failed:" << failure.localizedDescription << failure.detail;
            failures.insert(m_sources[static_cast<qsizetype>(i)], failure);
            firstFailure = firstFailure.value_or(failure);
        }
        if (rows.isEmpty() && firstFailure && !(m_question.isByHash && m_answers.front()->hasValue()))
            return *firstFailure;
        QueryResult best = bestRows(rows, m_question.videoName, m_question.preferences, m_stop);
        best.leftOut += leftOut;
        return best;
    }

    void give(const Result<QueryResult> &outcome, const Failures &failures) const
    {
        const bool leadsToWords = outcome && m_question.isByHash && outcome->subtitles->isEmpty();
        if (outcome)
            MainQueue::shared().async(
                [leadsToWords, gaps = Gaps{failures, outcome->leftOut}, state = m_onMainThread] {
                    state->outOfReach = leadsToWords ? outOfReach(gaps.failures) : Failures();
                    if (state->gapsObserver)
                        state->gapsObserver(gaps);
                });
        m_question.completion(outcome);
        // Queued after the completion's own blocks: later queries ask every source again.
        if (leadsToWords)
            MainQueue::shared().async([state = m_onMainThread] { state->outOfReach.clear(); });
    }

    const Question m_question;
    QStringList m_sources;
    std::mutex m_mutex; // guards the answers until the last one
    std::vector<std::optional<Result<QueryResult>>> m_answers;
    std::size_t m_answered = 0;
    const std::shared_ptr<OutstandingQueries> m_outstanding;
    const std::shared_ptr<MainThreadState> m_onMainThread;
    const std::weak_ptr<WorkerThread> m_worker;
    const std::stop_token m_stop;
};

CombinedSubtitleService::CombinedSubtitleService(const QList<Source> &sources,
                                                 std::shared_ptr<VideoNames> names,
                                                 std::function<RankingPreferences()> preferences)
    : m_sources(sources), m_names(std::move(names)), m_preferences(std::move(preferences))
{
}

CombinedSubtitleService::~CombinedSubtitleService()
{
    m_stop.request_stop();
    m_outstanding->cancelAll();
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
    if (m_isHeld)
        m_held.emplace_back([=, this] { start(number, args, completion); });
    else
        start(number, args, completion);
}

void CombinedSubtitleService::release()
{
    m_isHeld = false;
    for (const auto &begin : std::exchange(m_held, {}))
        begin();
}

void CombinedSubtitleService::start(quint64 number, const QList<Arg> &args, const QueryCompletion &completion)
{
    QList<Source> asked;
    for (const Source &source : m_sources) {
        if (!source.isAsked || source.isAsked())
            asked += source;
    }
    const bool isByHash = !valueOf(args, Param::movieHash).isEmpty();
    const auto search = std::make_shared<Search>(
        *this, Search::Question{number, isByHash, videoName(args), m_preferences(), completion}, asked);
    if (asked.isEmpty())
        MainQueue::shared().async([search] { search->finish(); });
    const Failures known = isByHash ? Failures() : m_onMainThread->outOfReach;
    for (qsizetype i = 0; i < asked.size(); ++i) {
        if (known.contains(asked[i].name))
            search->take(i, known[asked[i].name]);
        else
            asked[i].service->query(
                args, [search, i](const Result<QueryResult> &answer) { search->take(i, answer); });
    }
}

void CombinedSubtitleService::cancelQueryTask()
{
    m_held.clear();
    m_onMainThread->outOfReach.clear();
    m_stop.request_stop();
    m_stop = std::stop_source();
    m_outstanding->cancelAll();
    for (const Source &source : m_sources)
        source.service->cancelQueryTask();
}

void CombinedSubtitleService::download(const SubtitlePtr &subtitle, DownloadCompletion completion)
{
    for (const Source &source : m_sources) {
        if (source.name == subtitle->service)
            return source.service->download(subtitle, std::move(completion));
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
