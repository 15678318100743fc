#include "CatalogueMetadata.h"

#include "CatalogueDatabase.h"

#include <base/MainQueue.h>
#include <media/PosterImage.h>
#include <model/ImdbNumber.h>

#include <QGuiApplication>

#include <atomic>

using namespace Qt::StringLiterals;

namespace
{
qreal pixelRatio()
{
    // qGuiApp is null in tools and tests without windows.
    const auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    return application ? application->devicePixelRatio() : 1.0;
}
} // namespace

struct CatalogueMetadata::State
{
    explicit State(const QList<CataloguePlace> &cataloguePlaces) : places(cataloguePlaces) {}

    const QList<CataloguePlace> places;
    const CatalogueErrors errors;
    std::atomic<bool> isEnded = false; // set when the service is destroyed

    Result<CatalogueDatabase> open(const QString &path) const
    {
        return CatalogueDatabase::open(path, errors, {.isCancelled = [this] { return isEnded.load(); }});
    }

    Result<FindResult> find(const QString &id) const
    {
        const std::optional<qint64> number = imdbNumber(id);
        FindResult result;
        std::optional<base::Error> failure;
        for (const CataloguePlace &place : places) {
            if (place.isLeftOut() || !number)
                continue;
            const Result<CatalogueDatabase> database = open(place.path);
            const Result<std::optional<CatalogueFilm>> film =
                database ? database->filmByImdb(*number) : database.error();
            if (!film) {
                failure = failure ? failure : film.error();
            } else if (*film) {
                auto &results = (*film)->isSeries ? result.tvResults : result.movieResults;
                results += TmdbItem{QVariantList{place.path, (*film)->id}};
                return result;
            }
        }
        return failure ? Result<FindResult>(*failure) : result;
    }

    Result<QImage> image(const TmdbItem &item, const QSize &size, qreal ratio) const
    {
        const QVariantList handle = item.handle.toList();
        if (handle.size() != 2)
            return errors.error(CatalogueFailure::NoPicture, {});
        const QString path = handle.first().toString();
        const Result<CatalogueDatabase> database = open(path);
        const Result<QByteArray> poster =
            database ? database->poster(handle.last().toLongLong()) : database.error();
        if (!poster)
            return poster.error();
        const QImage image = posterImage(*poster, size, ratio);
        if (image.isNull())
            return errors.error(CatalogueFailure::NoPicture, path);
        return image;
    }
};

CatalogueMetadata::CatalogueMetadata(const QList<CataloguePlace> &places)
    : m_state(std::make_shared<State>(places))
{
}

CatalogueMetadata::~CatalogueMetadata()
{
    m_state->isEnded = true;
}

void CatalogueMetadata::findExternally(const QString &id, ExternalSource, FindCompletion completion)
{
    m_worker.post([state = m_state, id, completion = std::move(completion)] {
        MainQueue::shared().async([completion, result = state->find(id)] { completion(result); });
    });
}

void CatalogueMetadata::fetchImage(const TmdbItem &item, ImageKind, const QSize &size,
                                   ImageCompletion completion)
{
    m_worker.post([state = m_state, item, size, ratio = pixelRatio(), completion = std::move(completion)] {
        MainQueue::shared().async(
            [completion, result = state->image(item, size, ratio)] { completion(result); });
    });
}
