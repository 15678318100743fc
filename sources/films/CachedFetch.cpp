#include "CachedFetch.h"

#include "FilmAnswers.h"

#include <base/WorkerThread.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
QByteArrayList cacheDirectives(const HttpAnswer &answer)
{
    QByteArrayList directives;
    for (const QByteArray &directive : answer.header("Cache-Control").toLower().split(','))
        directives += directive.trimmed();
    return directives;
}

/// The lifetime that an answer's Cache-Control allows; none when it does not say.
std::optional<std::chrono::seconds> maxAgeOf(const QByteArrayList &directives)
{
    for (const QByteArray &text : directives) {
        if (text == "no-store" || text == "no-cache")
            return 0s;
        bool isNumber = false;
        const qlonglong age = text.startsWith("max-age=") ? text.mid(8).toLongLong(&isNumber) : 0;
        if (isNumber && age >= 0)
            return std::chrono::seconds(std::min(age, qlonglong{366} * 86'400));
    }
    return std::nullopt;
}
} // namespace

/// One question on its way, which ends when its call is released.
class CachedFetch::Fetch final : public std::enable_shared_from_this<Fetch>
{
public:
    Fetch(const CachedFetch &owner, const Question &question, Completion completion)
        : m_queue(owner.m_queue),
          m_worker(owner.m_worker),
          m_cache(owner.m_cache),
          m_question(question),
          m_completion(std::move(completion))
    {
    }

    void start()
    {
        const QDateTime date = m_queue.clock().date();
        onWorker(
            [cache = m_cache, key = m_question.key, isGood = m_question.isGood, date] {
                std::optional<DiskCache::Entry> entry = cache.find(key, date);
                // This version may parse the answer of an older one differently.
                return entry && isGood(entry->body) ? entry : std::nullopt;
            },
            [this, date](const std::optional<DiskCache::Entry> &known) {
                m_known = known;
                if (known && known->isFresh(date))
                    m_completion(known->body);
                else
                    ask();
            });
    }

private:
    /// Passes the result of `work` on, unless the call was released meanwhile.
    template <class Work, class Done>
    void onWorker(Work work, Done done)
    {
        inBackground(m_worker, std::move(work), [weak = weak_from_this(), done](const auto &result) {
            if (const auto held = weak.lock())
                done(result);
        });
    }

    void ask()
    {
        HttpRequest request = m_question.request;
        if (m_known && !m_known->etag.isEmpty())
            request.setHeader("If-None-Match", m_known->etag);
        m_call =
            m_queue.send(request, m_question.rules, [weak = weak_from_this()](const HttpResult &outcome) {
                if (const auto held = weak.lock())
                    held->arrive(outcome);
            });
    }

    void arrive(const HttpResult &outcome)
    {
        const bool isUnchanged = outcome && outcome->status == 304 && m_known;
        const bool serverFailed = !outcome || outcome->status >= 500;
        if (isUnchanged || (outcome && outcome->status == 200))
            store(*outcome);
        else if (m_known && serverFailed)
            m_completion(m_known->body);
        else
            m_completion(outcome ? FilmAnswers::errorOf(*outcome)
                                 : serviceError(outcome.error(), ServiceName::Films));
    }

    void store(const HttpAnswer &answer)
    {
        DiskCache::Entry entry = m_known.value_or(DiskCache::Entry());
        if (answer.status == 200)
            entry.body = answer.body;
        if (const QByteArray etag = answer.header("ETag"); answer.status == 200 || !etag.isEmpty())
            entry.etag = etag;
        const QByteArrayList directives = cacheDirectives(answer);
        entry.stored = m_queue.clock().date();
        entry.expires = entry.stored.addDuration(
            std::min(maxAgeOf(directives).value_or(m_question.life), m_question.longestLife));
        onWorker(
            [cache = m_cache, key = m_question.key, entry, isGood = m_question.isGood,
             mayBeKept = !directives.contains("no-store")] {
                const bool good = isGood(entry.body);
                if (!mayBeKept)
                    cache.remove(key);
                else if (good)
                    cache.store(key, entry);
                return good;
            },
            [this, body = entry.body](bool good) {
                // A wrong answer comes from another server, such as a sign-in page of the network.
                if (good)
                    m_completion(body);
                else if (m_known)
                    m_completion(m_known->body);
                else
                    m_completion(serviceError(ServiceFailure::BadAnswer, ServiceName::Films,
                                              u"an answer of the wrong kind"_s));
            });
    }

    RequestQueue &m_queue;
    WorkerThread &m_worker;
    const DiskCache m_cache;
    const Question m_question;
    const Completion m_completion;
    std::optional<DiskCache::Entry> m_known;
    HttpCall m_call;
};

CachedFetch::Call CachedFetch::fetch(const Question &question, Completion completion)
{
    const auto fetch = std::make_shared<Fetch>(*this, question, std::move(completion));
    fetch->start();
    return fetch;
}
