#pragma once
#include "CatalogueEntry.h"
#include "CatalogueErrors.h"

#include <base/DownloadFolder.h>
#include <base/WorkerThread.h>
#include <media/names/VideoNames.h>
#include <model/OutstandingQueries.h>
#include <model/SubtitleService.h>

/// A catalogue to search, and whether it may be absent.
struct CataloguePlace
{
    QString path;
    enum class Presence
    {
        Required,
        Optional
    } presence = Presence::Required;
};

/// Finds and fetches subtitles in catalogue files on this machine, searched side by side; no network, no
/// account. Functions are called on the main thread; the work is done on a thread of its own, where
/// completions arrive. Every query opens the files anew, so that a catalogue that grows or is replaced
/// meanwhile is seen as it is.
class CatalogueService final : public SubtitleService
{
public:
    /// What `Subtitle::service` says of its results.
    static QString name();

    explicit CatalogueService(const QList<CataloguePlace> &places,
                              const DownloadFolder &downloads = DownloadFolder());
    ~CatalogueService() override;

    /// One source with rows suffices; with none, any source's failure is the answer.
    void query(const QList<Arg> &args, QueryCompletion completion) override;
    void cancelQueryTask() override;
    /// Writes a copy of the catalogue's file into a folder of its own.
    void download(const SubtitlePtr &subtitle, DownloadCompletion completion) override;
    void cancelDownloads() override;

protected:
    std::optional<VideoHash> computeHash(const QUrl &url) override;
    VideoFileComponents componentsOf(const QUrl &url) override;

private:
    struct State; // what the jobs use; lives as long as one runs
    void postAfterReturn(std::function<void(State &)> job);

    std::shared_ptr<State> m_state;
    std::shared_ptr<WorkerThread> m_worker; // after the state; ours alone but for the turn that posts to it
};
