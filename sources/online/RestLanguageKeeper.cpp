#include "RestLanguageKeeper.h"

#include <net/WhileAlive.h>

#include <base/WorkerThread.h>

#include <QLoggingCategory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.rest", QtInfoMsg)

constexpr std::chrono::seconds KeptFor = 7 * 24h;
} // namespace

RestLanguageKeeper::RestLanguageKeeper(const Tools &tools, std::shared_ptr<RestSession> session)
    : m_tools(tools), m_session(std::move(session))
{
}

QString RestLanguageKeeper::key() const
{
    return QString::fromLatin1(RestURL::address(base(), u"/infos/languages"_s, {}).toEncoded());
}

void RestLanguageKeeper::use(std::shared_ptr<RestSession> session)
{
    const bool isOtherService = session->access().base != base();
    m_session = std::move(session);
    if (!isOtherService)
        return;
    m_isWanted = false;
    if (m_follows)
        readKept();
}

void RestLanguageKeeper::follow()
{
    m_follows = true;
    readKept();
}

void RestLanguageKeeper::noteSearch()
{
    if (!m_follows)
        return;
    m_isWanted = true;
    if (m_isRead && !m_isFreshOrAsked)
        ask();
}

void RestLanguageKeeper::readKept()
{
    m_list = {};
    m_isRead = m_isFreshOrAsked = false;
    m_call.reset();
    m_reading = std::make_shared<RestLanguageKeeper *>(this);
    inBackground(
        m_tools.worker,
        [cache = m_tools.cache, key = key(), date = m_tools.clock.date()] { return cache.find(key, date); },
        whileAlive(m_reading, [](const auto &self, const std::optional<DiskCache::Entry> &kept) {
            (*self)->takeKept(kept);
        }));
}

void RestLanguageKeeper::takeKept(const std::optional<DiskCache::Entry> &kept)
{
    m_isRead = true;
    if (const auto list = kept ? RestLanguages::read(kept->body) : std::nullopt) {
        m_list = *list;
        m_isFreshOrAsked = kept->isFresh(m_tools.clock.date());
    }
    if (m_isWanted && !m_isFreshOrAsked)
        ask();
}

void RestLanguageKeeper::ask()
{
    m_isFreshOrAsked = true;
    m_call = m_session->send({HttpRequest::Method::Get, u"/infos/languages"_s, {}, {}, false},
                             RestSession::Login::IfThereIsOne,
                             [this](const Result<HttpAnswer> &outcome) { takeAnswer(outcome); });
}

/// A failure is ignored, because the list from before is still valid.
void RestLanguageKeeper::takeAnswer(const Result<HttpAnswer> &outcome)
{
    const auto list = outcome && outcome->status == 200 ? RestLanguages::read(outcome->body) : std::nullopt;
    if (!list) {
        qCInfo(log) << "the service's languages could not be read";
        return;
    }
    m_list = *list;
    const QDateTime date = m_tools.clock.date();
    m_tools.worker.post([cache = m_tools.cache, key = key(), date, body = outcome->body] {
        cache.store(key, {body, {}, date, date.addDuration(KeptFor)});
    });
}
