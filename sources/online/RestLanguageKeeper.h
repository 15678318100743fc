#pragma once
#include "RestLanguageList.h"
#include "RestSession.h"

#include <base/WorkerThread.h>
#include <net/DiskCache.h>

/// Keeps the service's own list of languages at hand: from disk, and asked for anew when a person searches
/// and it is a week old, once in a run. Until there is one, the languages known here count. Main thread only.
class RestLanguageKeeper final
{
public:
    struct Tools
    {
        WorkerThread &worker;
        Clock &clock;
        DiskCache cache;
    };

    RestLanguageKeeper(const Tools &tools, std::shared_ptr<RestSession> session);

    /// Another base has other languages: those known here count until its own are read.
    void use(std::shared_ptr<RestSession> session);
    /// Begins: reads what is on disk. Without this the languages known here are all there are.
    void follow();
    /// A person searches: the time to ask.
    void noteSearch();
    const RestLanguageList &list() const { return m_list; }

private:
    void readKept();
    void takeKept(const std::optional<DiskCache::Entry> &kept);
    void ask();
    void takeAnswer(const Result<HttpAnswer> &outcome);
    const QUrl &base() const { return m_session->access().base; } // whose list it is
    QString key() const;

    Tools m_tools;
    RestLanguageList m_list;
    std::shared_ptr<RestSession> m_session;
    bool m_follows = false;
    bool m_isRead = false;
    bool m_isFreshOrAsked = false; // fresh, or asked for
    bool m_isWanted = false;
    RestSession::Call m_call;
    std::shared_ptr<RestLanguageKeeper *> m_alive;
};
