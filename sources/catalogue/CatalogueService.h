#pragma once
#include <base/DownloadFolder.h>
#include <base/WorkerThread.h>
#include <model/SubtitleService.h>

class VideoNames;

/// A catalogue to search, and whether its file may be missing.
struct CataloguePlace
{
    QString path;
    enum class Presence
    {
        Required,
        Optional
    } presence = Presence::Required;

    bool isLeftOut() const;
};

/// The path of the person's own catalogue: "Plovendix/catalogue.sqlite" in the person's data folder.
QString standardOwnCataloguePath();
/// The program's catalogues: the read-only one at `starterPath` (the bundle's "starter.sqlite") and the
/// person's own.
QList<CataloguePlace> standardCataloguePlaces(const QString &starterPath);

/// Finds and fetches subtitles in catalogue files on this machine, searched side by side; no network, no
/// account. Functions are called on the main thread; a worker thread does the work and calls the completions.
/// Every query opens the files anew, so that it sees their present content.
class CatalogueService final : public SubtitleService
{
public:
    /// The value of `Subtitle::service` in its results.
    static QString name();

    /// `names` maps hashes to names; the code that hashes a file fills it.
    CatalogueService(const QList<CataloguePlace> &places, std::shared_ptr<const VideoNames> names,
                     const DownloadFolder &downloads = DownloadFolder());
    ~CatalogueService() override;

    /// Succeeds when one source has rows; without rows, the failure of any source is the answer.
    void query(const QList<Arg> &args, QueryCompletion completion) override;
    void cancelQueryTask() override;
    /// Writes a copy of the catalogue's file into a new folder.
    void download(const SubtitlePtr &subtitle, DownloadCompletion completion) override;
    void cancelDownloads() override;

private:
    struct State; // the state that jobs share; it exists as long as one runs
    void postAfterReturn(std::function<void(State &)> job);

    const std::shared_ptr<const VideoNames> m_names;
    std::shared_ptr<State> m_state;
    std::shared_ptr<WorkerThread> m_worker; // after the state; the turn that posts to it holds it, too
};
