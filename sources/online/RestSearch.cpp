#include "RestSearch.h"

#include "RestErrors.h"

#include <net/WhileAlive.h>

#include <base/WorkerThread.h>

#include <QLoggingCategory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.rest", QtInfoMsg)

constexpr std::chrono::seconds KeptFor = 24h;
constexpr std::chrono::seconds NothingKeptFor = 1h;
} // namespace

/// The cache entry of one page and how to read it. Used on the worker.
struct RestSearch::CachedPage
{
    DiskCache cache;
    QUrl page;
    QUrl base;
    QDateTime date;
    Locale locale;
    std::stop_token stop;

    QString key() const { return QString::fromLatin1(page.toEncoded()); }

    /// The cached page, or none.
    std::optional<RestPage> find() const
    {
        const std::optional<DiskCache::Entry> entry = cache.find(key(), date);
        if (!entry || !entry->isFresh(date))
            return std::nullopt;
        const Result<RestPage> read = RestPage::read(entry->body, base, locale, stop);
        return read ? std::optional(*read) : std::nullopt;
    }

    /// Parses a new page and caches it if it is valid.
    Result<RestPage> put(const QByteArray &body) const
    {
        Result<RestPage> read = RestPage::read(body, base, locale, stop);
        if (read) {
            const auto kept = read->records > 0 ? KeptFor : NothingKeptFor;
            cache.store(key(), {body, {}, date, date.addDuration(kept)});
        }
        return read;
    }
};

RestSearch::RestSearch(const Tools &tools, const RestURL::Parameters &query, Completion completion)
    : m_tools(tools), m_query(query), m_locale(Locale::current()), m_completion(std::move(completion))
{
}

RestSearch::~RestSearch()
{
    m_stop.request_stop();
}

RestURL::Parameters RestSearch::parameters(int page) const
{
    RestURL::Parameters result = m_query;
    if (page > 1)
        result[u"page"_s] = QString::number(page);
    return result;
}

RestSearch::CachedPage RestSearch::cachedPage(int page) const
{
    const QUrl &base = m_tools.session->access().base;
    return {m_tools.cache, RestURL::address(base, u"/subtitles"_s, parameters(page)),
            base,          m_tools.clock.date(),
            m_locale,      m_stop.get_token()};
}

void RestSearch::lookUp(int page)
{
    inBackground(
        m_tools.worker, [cached = cachedPage(page)] { return cached.find(); },
        whileAlive(shared_from_this(), [page](const auto &self, const std::optional<RestPage> &found) {
            if (found)
                self->take(page, *found);
            else
                self->ask(page);
        }));
}

void RestSearch::ask(int page)
{
    if (!m_completion)
        return;
    const auto take = [page](const auto &self, const Result<HttpAnswer> &outcome) {
        self->arrive(page, outcome);
    };
    m_calls.push_back(m_tools.session->send({HttpRequest::Method::Get, u"/subtitles"_s, parameters(page)},
                                            RestSession::Login::IfThereIsOne,
                                            whileAlive(shared_from_this(), take)));
}

void RestSearch::arrive(int page, const Result<HttpAnswer> &outcome)
{
    if (!outcome || outcome->status != 200) {
        take(page, outcome ? RestErrors::error(*outcome) : outcome.error());
        return;
    }
    inBackground(
        m_tools.worker, [cached = cachedPage(page), body = outcome->body] { return cached.put(body); },
        whileAlive(shared_from_this(),
                   [page](const auto &self, const Result<RestPage> &read) { self->take(page, read); }));
}

void RestSearch::take(int page, const Result<RestPage> &read)
{
    m_early.emplace(page, read);
    for (auto next = m_early.find(m_next); m_completion && next != m_early.end(); next = m_early.find(m_next))
        takeNext(m_early.extract(next).mapped());
}

void RestSearch::takeNext(const Result<RestPage> &read)
{
    if (!read && m_found.isEmpty()) {
        end(read.error());
        return;
    }
    if (!read) {
        // After a later page fails, the rows found so far are the answer.
        qCWarning(log).noquote() << "the search ended early:" << read.error().detail;
        finish();
        return;
    }
    const bool isFirst = m_next == 1;
    if (isFirst)
        countPages(*read);
    if (isLast(*read)) {
        finish();
        return;
    }
    ++m_next;
    for (int page = 2; isFirst && page <= m_pages; ++page)
        lookUp(page);
}

void RestSearch::countPages(const RestPage &first)
{
    m_total = first.totalCount;
    m_pages = std::clamp(first.totalPages, 1, MaxPages);
    // Some services announce more pages than they have records for.
    if (first.records > 0 && m_total > first.records)
        m_pages = static_cast<int>(std::min<qint64>(m_pages, (m_total + first.records - 1) / first.records));
}

/// Adds the page's rows and returns whether it is the last one to request.
bool RestSearch::isLast(const RestPage &read)
{
    if (read.records == 0 || m_seen.contains(read.fingerprint))
        return true;
    m_seen += read.fingerprint;
    m_found += read.subtitles;
    m_records += read.records;
    return m_next >= m_pages || m_found.size() >= QueryResult::MaxRows;
}

void RestSearch::finish()
{
    const qint64 unread = std::max<qint64>(0, m_total - m_records);
    if (unread > 0)
        qCInfo(log).noquote() << u"%1 of %2 records left out"_s.arg(unread).arg(m_total);
    end(QueryResult{std::move(m_found), unread});
}

void RestSearch::end(const Result<QueryResult> &result)
{
    m_calls.clear();
    std::exchange(m_completion, nullptr)(result);
}
