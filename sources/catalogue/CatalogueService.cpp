#include "CatalogueService.h"

#include "CatalogueSearch.h"

#include <base/MainQueue.h>
#include <media/names/VideoNames.h>
#include <model/OutstandingQueries.h>

#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::hours DownloadsKeptFor{7 * 24};
}

bool CataloguePlace::isLeftOut() const
{
    return presence == Presence::Optional && !QFileInfo::exists(path);
}

QString standardOwnCataloguePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           "/Plovendix/catalogue.sqlite"_L1;
}

QList<CataloguePlace> standardCataloguePlaces(const QString &starterPath)
{
    return {{starterPath, CataloguePlace::Presence::Required},
            {standardOwnCataloguePath(), CataloguePlace::Presence::Optional}};
}

struct CatalogueService::State
{
    State(const QList<CataloguePlace> &cataloguePlaces, const DownloadFolder &downloadFolder)
        : places(cataloguePlaces), downloads(downloadFolder)
    {
    }

    const QList<CataloguePlace> places;
    const CatalogueErrors errors;
    const DownloadFolder downloads;
    OutstandingQueries outstanding;
    OutstandingQueries outstandingDownloads;

    void search(quint64 number, const CatalogueRequest &request, const QueryCompletion &completion)
    {
        if (!outstanding.isOutstanding(number))
            return;
        const ReadLimits limits{.isCancelled = [&] { return !outstanding.isOutstanding(number); }};
        const Result<QueryResult> result = searchCatalogues(places, errors, request, limits);
        outstanding.finish(number, [&] { completion(result); });
    }

    void deliver(quint64 number, const Subtitle &subtitle, const DownloadCompletion &completion)
    {
        if (!outstandingDownloads.isOutstanding(number))
            return;
        const Result<QUrl> file = fetchFromCatalogue(places, errors, subtitle, downloads);
        bool isWanted = false;
        outstandingDownloads.finish(number, [&] { isWanted = true; });
        // A cancel does not wait for the work of the completion.
        if (isWanted)
            completion(file);
    }
};

QString CatalogueService::name()
{
    return u"catalogue"_s;
}

CatalogueService::CatalogueService(const QList<CataloguePlace> &places,
                                   std::shared_ptr<const VideoNames> names, const DownloadFolder &downloads)
    : m_names(std::move(names)),
      m_state(std::make_shared<State>(places, downloads)),
      m_worker(std::make_shared<WorkerThread>())
{
    m_worker->post([state = m_state] { state->downloads.clearOlderThan(DownloadsKeptFor); });
}

CatalogueService::~CatalogueService()
{
    m_state->outstanding.cancelAll();
}

/// Passes the job to the worker on a later turn of the main thread, because its completion must not come
/// before the call that asked for it has returned.
void CatalogueService::postAfterReturn(std::function<void(State &)> job)
{
    MainQueue::shared().async([state = m_state, weak = std::weak_ptr(m_worker), job = std::move(job)] {
        if (const auto worker = weak.lock())
            worker->post([state, job] { job(*state); });
    });
}

void CatalogueService::query(const QList<Arg> &args, QueryCompletion completion)
{
    const quint64 number = m_state->outstanding.begin();
    CatalogueRequest request = CatalogueRequest::from(args);
    if (request.video)
        request.text = m_names->nameOf(*request.video);
    postAfterReturn([number, request, completion = std::move(completion)](State &state) {
        state.search(number, request, completion);
    });
}

void CatalogueService::cancelQueryTask()
{
    m_state->outstanding.cancelAll();
}

void CatalogueService::download(const SubtitlePtr &subtitle, DownloadCompletion completion)
{
    const quint64 number = m_state->outstandingDownloads.begin();
    postAfterReturn([number, subtitle, completion = std::move(completion)](State &state) {
        state.deliver(number, *subtitle, completion);
    });
}

void CatalogueService::cancelDownloads()
{
    m_state->outstandingDownloads.cancelAll();
}
