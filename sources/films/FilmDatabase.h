#pragma once
#include "CachedFetch.h"
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

private:
    struct Lookup;
    struct Picture;

    void takeFind(const Result<QByteArray> &body);
    void takeShow(const Result<QByteArray> &body);
    void finishLookup(const Result<FindResult> &answer);
    void startPictures();
    void fetchPicture(const std::shared_ptr<Picture> &picture, const Result<QByteArray> &configuration);
    void decode(const std::shared_ptr<Picture> &picture, const QByteArray &bytes);
    void finishPicture(const std::shared_ptr<Picture> &picture, const Result<QImage> &image);

    FilmSettings m_settings;
    DiskCache m_cache;
    RequestQueue m_queue;
    std::unique_ptr<WorkerThread> m_worker;
    CachedFetch m_fetch;
    std::function<qreal()> m_pixelRatio;
    std::unique_ptr<Lookup> m_lookup;                // under way
    std::deque<std::shared_ptr<Picture>> m_pictures; // the first ones under way, the others waiting
    HttpCall m_test;
};
