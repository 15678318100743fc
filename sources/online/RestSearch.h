#pragma once
#include "RestPage.h"
#include "RestSession.h"

#include <base/WorkerThread.h>
#include <model/SubtitleService.h>
#include <net/DiskCache.h>

#include <QSet>

#include <map>

/// One search, limited in pages and rows, with one answer. The first page says how many there are; the others
/// are requested side by side and processed in order. Cached pages are used; the worker parses. Releasing the
/// search cancels it without an answer. Main thread only.
class RestSearch final : public std::enable_shared_from_this<RestSearch>
{
public:
    struct Tools
    {
        std::shared_ptr<RestSession> session; // used for the whole search
        WorkerThread &worker;
        Clock &clock;
        DiskCache cache;
    };
    using Completion = SubtitleService::QueryCompletion;

    RestSearch(const Tools &tools, const RestURL::Parameters &query, Completion completion);
    ~RestSearch();
    RestSearch(const RestSearch &) = delete;
    RestSearch &operator=(const RestSearch &) = delete;

    void start() { lookUp(1); }
    /// Ends the search, also one that was not started.
    void fail(const base::Error &error) { end(error); }

    static constexpr int MaxPages = 10;

private:
    struct CachedPage;
    CachedPage cachedPage(int page) const;
    RestURL::Parameters parameters(int page) const;
    void lookUp(int page);
    void ask(int page);
    void arrive(int page, const Result<HttpAnswer> &outcome);
    void take(int page, const Result<RestPage> &read);
    void takeNext(const Result<RestPage> &read);
    void countPages(const RestPage &first);
    bool isLast(const RestPage &read);
    void finish();
    void end(const Result<QueryResult> &result);

    Tools m_tools;
    const RestURL::Parameters m_query;
    const Locale m_locale;
    Completion m_completion; // empty once called
    QList<SubtitlePtr> m_found;
    QSet<QByteArray> m_seen; // fingerprints of the pages
    qint64 m_records = 0;
    qint64 m_total = 0;
    int m_pages = 1;                         // the number of pages to request
    int m_next = 1;                          // the page to process next
    std::map<int, Result<RestPage>> m_early; // pages that arrived before earlier ones
    std::vector<HttpCall> m_calls;
    std::stop_source m_stop; // ends the work on the worker
};
