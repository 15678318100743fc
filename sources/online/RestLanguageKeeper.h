#pragma once
#include "RestLanguages.h"
#include "RestSession.h"

#include <base/WorkerThread.h>
#include <net/DiskCache.h>

/// Keeps the service's list of languages: read from disk, and requested at most once per run, when a person
/// searches and the list is a week old. Without a list the built-in languages are used. Main thread only.
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

    /// Another base has another list; the built-in languages are used until it is read.
    void use(std::shared_ptr<RestSession> session);
    /// Starts by reading the list on disk. Without this call the built-in languages are used.
    void follow();
    /// Call when a person searches; may request the list.
    void noteSearch();
    const RestLanguages &list() const { return m_list; }

private:
    void readKept();
    void takeKept(const std::optional<DiskCache::Entry> &kept);
    void ask();
    void takeAnswer(const Result<HttpAnswer> &outcome);
    const QUrl &base() const { return m_session->access().base; } // the base of the list
    QString key() const;

    Tools m_tools;
    RestLanguages m_list;
    std::shared_ptr<RestSession> m_session;
    bool m_follows = false;
    bool m_isRead = false;
    bool m_isFreshOrAsked = false; // the list is fresh, or was requested
    bool m_isWanted = false;
    HttpCall m_call;
    std::shared_ptr<RestLanguageKeeper *> m_reading; // alive while the list that is being read is wanted
};
