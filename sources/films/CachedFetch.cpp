#include "CachedFetch.h"

#include "FilmErrors.h"

#include <base/WorkerThread.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

struct CachedFetch::RequestState
{
    Question question;
    Completion completion;
    std::optional<DiskCache::Entry> known;
    HttpCall call;
};

namespace
{
QByteArrayList cacheDirectives(const HttpAnswer &answer)
{
    QByteArrayList directives;
    for (const QByteArray &directive : answer.header("Cache-Control").toLower().split(','))
        directives += directive.trimmed();
    return directives;
}

/// The stored answer if it is usable: this version may parse the answer of an older one differently.
std::optional<DiskCache::Entry> keptAnswer(const DiskCache &cache, const CachedFetch::Question &question,
                                           const QDateTime &date)
{
    std::optional<DiskCache::Entry> entry = cache.find(question.key, date);
    const bool isUsable = entry && (!question.isGood || question.isGood(entry->body));
    return isUsable ? entry : std::nullopt;
}
} // namespace

std::optional<std::chrono::seconds> maxAgeOf(const HttpAnswer &answer)
{
    for (const QByteArray &text : cacheDirectives(answer)) {
        if (text == "no-store" || text == "no-cache")
            return 0s;
        bool isNumber = false;
        const qlonglong age = text.startsWith("max-age=") ? text.mid(8).toLongLong(&isNumber) : 0;
        if (isNumber && age >= 0)
            return std::chrono::seconds(std::min(age, qlonglong{366} * 86'400));
    }
    return std::nullopt;
}

CachedFetch::CachedFetch(RequestQueue &queue, WorkerThread &worker, const DiskCache &cache)
    : m_queue(queue), m_worker(worker), m_cache(cache)
{
}

CachedFetch::Call CachedFetch::fetch(const Question &question, Completion completion)
{
    auto state = std::make_shared<RequestState>(RequestState{question, std::move(completion), {}, {}});
    const QDateTime date = m_queue.clock().date();
    inBackground(
        m_worker, [cache = m_cache, question, date] { return keptAnswer(cache, question, date); },
        [this, date, weak = std::weak_ptr(state)](const std::optional<DiskCache::Entry> &known) {
            const auto held = weak.lock();
            if (!held)
                return;
            held->known = known;
            if (known && known->isFresh(date))
                held->completion(known->body);
            else
                ask(held);
        });
    return state;
}

void CachedFetch::ask(const std::shared_ptr<RequestState> &state)
{
    HttpRequest request = state->question.request;
    if (state->known && !state->known->etag.isEmpty())
        request.setHeader("If-None-Match", state->known->etag);
    state->call = m_queue.send(request, state->question.rules,
                               [this, weak = std::weak_ptr(state)](const HttpResult &outcome) {
                                   if (const auto held = weak.lock())
                                       arrive(held, outcome);
                               });
}

void CachedFetch::arrive(const std::shared_ptr<RequestState> &state, const HttpResult &outcome)
{
    const bool isUnchanged = outcome && outcome->status == 304 && state->known;
    if (isUnchanged || (outcome && outcome->status == 200)) {
        store(state, *outcome);
        return;
    }
    const bool serverFailed = !outcome || outcome->status >= 500;
    if (state->known && serverFailed)
        state->completion(state->known->body);
    else
        state->completion(outcome ? filmError(*outcome) : serviceError(outcome.error(), ServiceName::Films));
}

void CachedFetch::store(const std::shared_ptr<RequestState> &state, const HttpAnswer &answer)
{
    const Question &question = state->question;
    DiskCache::Entry entry = state->known.value_or(DiskCache::Entry());
    if (answer.status == 200)
        entry.body = answer.body;
    if (const QByteArray etag = answer.header("ETag"); answer.status == 200 || !etag.isEmpty())
        entry.etag = etag;
    entry.stored = m_queue.clock().date();
    entry.expires =
        entry.stored.addDuration(std::min(maxAgeOf(answer).value_or(question.life), question.longestLife));
    const bool mayBeKept = !cacheDirectives(answer).contains("no-store");
    inBackground(
        m_worker,
        [cache = m_cache, key = question.key, entry, isGood = question.isGood, mayBeKept] {
            const bool good = !isGood || isGood(entry.body);
            if (!mayBeKept)
                cache.remove(key);
            else if (good)
                cache.store(key, entry);
            return good;
        },
        [weak = std::weak_ptr(state), body = entry.body](bool good) {
            const auto held = weak.lock();
            if (!held)
                return;
            // A wrong answer comes from another server, such as a sign-in page of the network.
            if (good)
                held->completion(body);
            else if (held->known)
                held->completion(held->known->body);
            else
                held->completion(serviceError(ServiceFailure::BadAnswer, ServiceName::Films,
                                              u"an answer of the wrong kind"_s));
        });
}
