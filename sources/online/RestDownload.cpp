#include "RestDownload.h"

#include "RestErrors.h"
#include "RestFileId.h"
#include "RestFiles.h"
#include "RestOrder.h"

#include <base/WorkerThread.h>
#include <base/LocalizedString.h>
#include <net/Json.h>

#include <QLoggingCategory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.rest", QtInfoMsg)

constexpr Clock::Duration LinkLife = 2h + 50min; // the service guarantees three hours
constexpr qsizetype MaxFileBytes = 8LL * 1024 * 1024;
constexpr Clock::Duration TransferLimit = 120s;

/// At the present service the number would name another file.
base::Error ofAnotherService(const QString &id)
{
    base::Error error =
        serviceError(ServiceFailure::Rejected, ServiceName::Subtitles, u"a file of another service: "_s + id);
    error.localizedDescription =
        String::localize(u"The service this subtitle came from is not in use now."_s);
    return error;
}
} // namespace

/// One file being fetched, for all callers that requested it meanwhile.
struct RestDownload::Job
{
    std::shared_ptr<RestSession> session;
    SubtitlePtr subtitle;
    QList<Completion> waiting;
    HttpCall call;
    bool isBeingPaid = false; // from when the order leaves until its link or its cost is known

    /// The file's key in the cache and among the links.
    const QString &key() const { return subtitle->fileID; }
};

RestDownload::RestDownload(const Tools &tools, std::shared_ptr<RestSession> session)
    : m_tools(tools), m_session(std::move(session))
{
}

RestDownload::~RestDownload() = default;

void RestDownload::use(std::shared_ptr<RestSession> session)
{
    m_session = std::move(session);
    takeQuota(*m_session, m_session->quota());
}

void RestDownload::takeQuota(RestSession &session, const RestQuota &quota)
{
    session.setQuota(quota);
    if (m_observer && &session == m_session.get())
        m_observer(quota);
}

void RestDownload::fetch(const SubtitlePtr &subtitle, Completion completion)
{
    std::shared_ptr<Job> &job = m_jobs[{m_session.get(), subtitle->fileID}];
    const bool isUnderWay = job != nullptr;
    if (!isUnderWay)
        job = std::make_shared<Job>(Job{m_session, subtitle, {}, {}, false});
    job->waiting += std::move(completion);
    if (!isUnderWay)
        lookUp(job);
}

void RestDownload::cancelAll()
{
    const QList<std::shared_ptr<Job>> jobs = m_jobs.values();
    for (const std::shared_ptr<Job> &job : jobs) {
        job->waiting.clear();
        if (!job->isBeingPaid)
            forget(*job);
    }
}

void RestDownload::lookUp(const std::shared_ptr<Job> &job)
{
    inBackground(
        m_tools.worker,
        [kept = m_tools.kept, key = job->key(), subtitle = job->subtitle,
         date = m_tools.queue.clock().date()] {
            return RestFiles::find(kept, key, subtitle->subLanguageID, date);
        },
        [this, weak = std::weak_ptr(job)](const std::optional<SubtitleFile> &file) {
            const auto held = weak.lock();
            if (!held)
                return;
            if (file)
                publish(held, *file, LinkUse::Spent);
            else
                order(held);
        });
}

void RestDownload::order(const std::shared_ptr<Job> &job)
{
    const std::optional<qint64> number = RestFileId::numberAt(job->session->access().base, job->key());
    if (!number) {
        finish(job, ofAnotherService(job->key()));
        return;
    }
    const Clock &clock = m_tools.queue.clock();
    const Link link = m_links.value(job->key());
    if (clock.now() < link.ends && clock.date() < link.endDate) {
        transfer(job, link.url);
        return;
    }
    if (job->session->quota().isUsedUp(clock.date())) {
        finish(job, RestOrder::limitReached(*job->session, clock.date(), u"known to be used up"_s));
        return;
    }
    RestSession::Request request = RestOrder::request(*number);
    request.onLeaving = [weak = std::weak_ptr(job)] {
        if (const auto held = weak.lock())
            held->isBeingPaid = true;
    };
    job->call = job->session->send(request, RestSession::Login::Wanted,
                                   [this, weak = std::weak_ptr(job)](const Result<HttpAnswer> &outcome) {
                                       if (const auto held = weak.lock())
                                           takeOrder(held, outcome);
                                   });
}

void RestDownload::takeOrder(const std::shared_ptr<Job> &job, const Result<HttpAnswer> &outcome)
{
    if (!outcome) {
        askForQuota(job, outcome.error());
        return;
    }
    if (const auto quota = RestOrder::quotaAfter(job->session->quota(), *outcome))
        takeQuota(*job->session, *quota);
    const Clock &clock = m_tools.queue.clock();
    const Result<QUrl> link = RestOrder::linkFrom(*job->session, *outcome, clock.date());
    if (!link) {
        finish(job, link.error());
        return;
    }
    m_links[job->key()] = {*link, clock.now() + LinkLife, clock.date().addDuration(LinkLife)};
    job->isBeingPaid = false;
    const bool isWanted = !job->waiting.isEmpty();
    if (isWanted)
        transfer(job, *link);
    else
        forget(*job);
}

void RestDownload::transfer(const std::shared_ptr<Job> &job, const QUrl &link)
{
    HttpRequest request; // the link needs no key
    request.url = link;
    request.setHeader("Accept", "*/*");
    request.maxBytes = MaxFileBytes;
    request.deadline = TransferLimit;
    job->call = m_tools.queue.send(request, job->session->access().linkHosts(),
                                   [this, weak = std::weak_ptr(job)](const HttpResult &outcome) {
                                       if (const auto held = weak.lock())
                                           takeTransfer(held, outcome);
                                   });
}

void RestDownload::takeTransfer(const std::shared_ptr<Job> &job, const HttpResult &outcome)
{
    if (!outcome) {
        finish(job, serviceError(outcome.error(), ServiceName::Subtitles));
        return;
    }
    if (RestErrors::isLinkRefused(*outcome))
        m_links.remove(job->key());
    if (outcome->status == 304 || outcome->status == 204)
        keep(job, {});
    else if (outcome->status != 200)
        finish(job, RestErrors::linkError(*outcome));
    else
        keep(job, outcome->body);
}

void RestDownload::keep(const std::shared_ptr<Job> &job, const QByteArray &bytes)
{
    inBackground(
        m_tools.worker,
        [kept = m_tools.kept, key = job->key(), subtitle = job->subtitle, date = m_tools.queue.clock().date(),
         bytes] { return RestFiles::take(kept, key, subtitle->subLanguageID, date, bytes); },
        [this, weak = std::weak_ptr(job)](const Result<RestFiles::TakenFile> &taken) {
            const auto held = weak.lock();
            if (!held)
                return;
            // The answer may come from elsewhere, such as a sign-in page: the link is still paid for and is
            // kept.
            if (!taken) {
                finish(held, taken.error());
                return;
            }
            publish(held, taken->file, taken->isKept ? LinkUse::Spent : LinkUse::StillWanted);
        });
}

/// Each caller gets a separate copy, because it may move the file away. A paid link is kept until the copies
/// exist, and longer if it is the only way to get the content again.
void RestDownload::publish(const std::shared_ptr<Job> &job, const SubtitleFile &file, LinkUse link)
{
    const QByteArray content = m_keepsOriginalBytes ? file.original : file.utf8;
    inBackground(
        m_tools.worker,
        [downloads = m_tools.downloads, name = RestFiles::nameOf(*job->subtitle, file), content,
         count = job->waiting.size()] { return RestFiles::publish(downloads, name, content, count); },
        [this, weak = std::weak_ptr(job), file, link](const Result<QList<QUrl>> &files) {
            const auto held = weak.lock();
            if (!held)
                return;
            const bool someoneCame = files && files->size() < held->waiting.size();
            if (someoneCame) {
                publish(held, file, link);
                return;
            }
            if (files && link == LinkUse::Spent)
                m_links.remove(held->key());
            finish(held, files);
        });
}

/// Only the service knows whether a broken order was counted, so the quota is requested before the next
/// order.
void RestDownload::askForQuota(const std::shared_ptr<Job> &job, const base::Error &error)
{
    const auto kind = kindOf(error);
    const bool wasPerhapsCounted = kind == ServiceFailure::Timeout || kind == ServiceFailure::Unavailable ||
                                   kind == ServiceFailure::BadAnswer;
    if (!wasPerhapsCounted || !job->session->isLoggedIn()) {
        finish(job, error);
        return;
    }
    tell(*job, error);
    job->call =
        job->session->send({HttpRequest::Method::Get, u"/infos/user"_s}, RestSession::Login::IfThereIsOne,
                           [this, weak = std::weak_ptr(job)](const Result<HttpAnswer> &outcome) {
                               if (const auto held = weak.lock())
                                   takeCost(held, outcome);
                           });
}

void RestDownload::takeCost(const std::shared_ptr<Job> &job, const Result<HttpAnswer> &outcome)
{
    const auto object = outcome ? Json::object(outcome->body) : std::nullopt;
    if (object && outcome->isSuccess()) {
        RestQuota quota = job->session->quota();
        quota.takeUser((*object)[u"data"_s].toObject());
        takeQuota(*job->session, quota);
    }
    job->isBeingPaid = false;
    const bool isWantedAgain = !job->waiting.isEmpty();
    if (isWantedAgain)
        order(job);
    else
        forget(*job);
}

void RestDownload::finish(const std::shared_ptr<Job> &job, const Result<QList<QUrl>> &files)
{
    forget(*job);
    tell(*job, files);
}

void RestDownload::forget(const Job &job)
{
    m_jobs.remove({job.session.get(), job.key()});
}

void RestDownload::tell(Job &job, const Result<QList<QUrl>> &files)
{
    if (!files)
        qCWarning(log).noquote() << "no download:" << files.error().detail;
    const QList<Completion> waiting = std::exchange(job.waiting, {});
    MainQueue::shared().async([waiting, files] {
        for (qsizetype i = 0; i < waiting.size(); ++i)
            waiting[i](files ? Result<QUrl>((*files)[i]) : Result<QUrl>(files.error()));
    });
}
