#include "RestDownload.h"

#include "RestErrors.h"
#include "RestFiles.h"

#include <base/WorkerThread.h>
#include <base/LocalizedString.h>
#include <base/SafeFileName.h>
#include <net/Json.h>
#include <net/WhileAlive.h>

#include <QJsonDocument>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.rest", QtInfoMsg)

constexpr Clock::Duration LinkLife = 2h + 50min; // the service guarantees three hours
constexpr qsizetype MaxFileBytes = 8LL * 1024 * 1024;
constexpr Clock::Duration TransferTimeout = 120s;

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
    : m_tools(tools), m_session(std::move(session)), m_answers(std::make_unique<QObject>())
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
    m_answers = std::make_unique<QObject>();
    const QList<std::shared_ptr<Job>> jobs = m_jobs.values();
    for (const std::shared_ptr<Job> &job : jobs) {
        job->waiting.clear();
        if (!job->isBeingPaid)
            forget(*job);
    }
}

void RestDownload::answer(const Completion &completion, const Result<QUrl> &file)
{
    MainQueue::shared().async(m_answers.get(), [completion, file] { completion(file); });
}

void RestDownload::lookUp(const std::shared_ptr<Job> &job)
{
    const auto take = [this](const auto &held, const std::optional<SubtitleFile> &file) {
        if (file)
            publish(held, *file, LinkUse::Spent);
        else
            order(held);
    };
    inBackground(
        m_tools.worker,
        [kept = m_tools.kept, subtitle = job->subtitle, date = m_tools.queue.clock().date()] {
            return RestFiles::find(kept, *subtitle, date);
        },
        whileAlive(job, take));
}

void RestDownload::order(const std::shared_ptr<Job> &job)
{
    RestSession &session = *job->session;
    const std::optional<qint64> number = RestURL::fileNumber(session.access().base, job->key());
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
    if (session.quota().isUsedUp(clock.date())) {
        finish(job, session.quota().error(session.access(), clock.date(), u"known to be used up"_s));
        return;
    }
    const QJsonObject order{{u"file_id"_s, *number}, {u"sub_format"_s, u"srt"_s}};
    RestSession::Request request{
        HttpRequest::Method::Post, u"/download"_s, {}, QJsonDocument(order).toJson(QJsonDocument::Compact)};
    request.onLeaving = whileAlive(job, [](const auto &held) { held->isBeingPaid = true; });
    const auto take = [this](const auto &held, const Result<HttpAnswer> &outcome) {
        takeOrder(held, outcome);
    };
    job->call = session.send(request, RestSession::Login::Wanted, whileAlive(job, take));
}

void RestDownload::takeOrder(const std::shared_ptr<Job> &job, const Result<HttpAnswer> &outcome)
{
    if (!outcome) {
        askForQuota(job, outcome.error());
        return;
    }
    RestSession &session = *job->session;
    RestQuota quota = session.quota();
    if (quota.takeOrder(*outcome))
        takeQuota(session, quota);
    const Clock &clock = m_tools.queue.clock();
    const Result<QUrl> link = quota.linkFrom(*outcome, session.access(), clock.date());
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
    request.deadline = TransferTimeout;
    const auto take = [this](const auto &held, const HttpResult &outcome) { takeTransfer(held, outcome); };
    job->call = m_tools.queue.send(request, job->session->access().linkHosts(), whileAlive(job, take));
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
    // The answer may come from elsewhere, such as a sign-in page: then the paid link is kept.
    const auto take = [this](const auto &held, const Result<RestFiles::TakenFile> &taken) {
        if (taken)
            publish(held, taken->file, taken->isKept ? LinkUse::Spent : LinkUse::StillWanted);
        else
            finish(held, taken.error());
    };
    inBackground(
        m_tools.worker,
        [kept = m_tools.kept, subtitle = job->subtitle, date = m_tools.queue.clock().date(), bytes] {
            return RestFiles::take(kept, *subtitle, date, bytes);
        },
        whileAlive(job, take));
}

/// Each caller gets a separate copy, because it may move the file away. A paid link is kept while it is the
/// only way to get the content again.
void RestDownload::publish(const std::shared_ptr<Job> &job, const SubtitleFile &file, LinkUse link)
{
    const auto take = [this, file, link](const auto &held, const Result<QList<QUrl>> &files) {
        const bool someoneCame = files && files->size() < held->waiting.size();
        if (someoneCame) {
            publish(held, file, link);
            return;
        }
        if (files && link == LinkUse::Spent)
            m_links.remove(held->key());
        finish(held, files);
    };
    inBackground(
        m_tools.worker,
        [downloads = m_tools.downloads, subtitle = job->subtitle, extension = file.extension,
         content = m_keepsOriginalBytes ? file.original : file.utf8, count = job->waiting.size()] {
            const QString name = safeFileName(subtitle->subFileName, extension);
            return RestFiles::publish(downloads, name, content, count);
        },
        whileAlive(job, take));
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
    const auto take = [this](const auto &held, const Result<HttpAnswer> &outcome) {
        takeCost(held, outcome);
    };
    job->call = job->session->send({HttpRequest::Method::Get, u"/infos/user"_s},
                                   RestSession::Login::IfThereIsOne, whileAlive(job, take));
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
    for (qsizetype i = 0; i < waiting.size(); ++i)
        answer(waiting[i], files ? Result<QUrl>((*files)[i]) : Result<QUrl>(files.error()));
}
