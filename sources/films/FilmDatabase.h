#pragma once
#include "CachedFetch.h"
#include "FilmAnswers.h"
#include "FilmImages.h"
#include "FilmSettings.h"

#include <model/MetadataService.h>

#include <deque>

/// The film database on the network, with answers cached on disk. A new lookup (a film and its picture)
/// cancels the running one without an answer. Lives on the main thread, where completions are called.
class FilmDatabase final : public MetadataService
{
public:
    /// `pixelRatio` says how many pixels a point has on the screen.
    FilmDatabase(Clock &clock, const FilmSettings &settings,
                 const QString &cacheFolder = standardCacheFolder(), std::function<qreal()> pixelRatio = {});
    ~FilmDatabase() override;
    static QString standardCacheFolder();

    /// For new requests; running ones keep their settings.
    void setSettings(const FilmSettings &settings);
    bool hasKey() const { return !m_settings.key.isEmpty(); }

    /// An unknown film is an answer with empty lists. An episode is answered with its show.
    void findExternally(const QString &id, ExternalSource source, FindCompletion completion) override;
    void fetchImage(const TmdbItem &item, ImageKind kind, const QSize &size,
                    ImageCompletion completion) override;
    /// Whether the server accepts the key; always asks anew.
    void testKey(std::function<void(Result<void>)> completion);
    void emptyCache();

private:
    struct Task;
    struct Picture
    {
        QString path;
        QSize size;
        qreal ratio = 1;
        FilmSettings settings;
        ImageCompletion completion;
    };

    void dropLookup();
    std::shared_ptr<Task> newTask();
    void end(const std::shared_ptr<Task> &task);
    void takeFind(const std::shared_ptr<Task> &task, const Result<QByteArray> &body,
                  const FindCompletion &completion);
    void askForShow(const std::shared_ptr<Task> &task, qint64 show, const FindCompletion &completion);
    void startPictures();
    void askForConfiguration(const Picture &picture);
    void fetchPicture(const std::shared_ptr<Task> &task, const Picture &picture, const FilmImages &images);
    void decode(const std::shared_ptr<Task> &task, const Picture &picture, const QByteArray &bytes);
    void finishPicture(const std::shared_ptr<Task> &task, const Picture &picture,
                       const Result<QImage> &image);

    FilmSettings m_settings;
    DiskCache m_cache;
    RequestQueue m_queue;
    std::unique_ptr<WorkerThread> m_worker;
    CachedFetch m_fetch;
    std::function<qreal()> m_pixelRatio;
    std::vector<std::shared_ptr<Task>> m_tasks; // under way
    HttpCall m_test;
    std::deque<Picture> m_waitingPictures;
    int m_picturesUnderWay = 0;
};
