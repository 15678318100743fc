#include "CombinedMetadataService.h"

#include <base/LocalizedString.h>
#include <base/MainQueue.h>

using namespace Qt::StringLiterals;

namespace
{
const QString IndexKey = u"source"_s;
const QString HandleKey = u"handle"_s;
const QString IdKey = u"id"_s;
const QString LookupKey = u"lookup"_s;

void wrap(QList<TmdbItem> &items, qsizetype source, const QString &id, quint64 lookup)
{
    for (TmdbItem &item : items)
        item.handle =
            QVariantMap{{IndexKey, source}, {HandleKey, item.handle}, {IdKey, id}, {LookupKey, lookup}};
}

bool isEmpty(const FindResult &result)
{
    return result.movieResults.isEmpty() && result.tvResults.isEmpty();
}

base::Error noPicture()
{
    return {u"Service"_s, 0, String::localize(u"There is no poster of this film."_s),
            u"an item of no source"_s};
}
} // namespace

/// The sources and the steps from one to the next.
struct CombinedMetadataService::Chain : std::enable_shared_from_this<Chain>
{
    struct Find
    {
        QString id;
        ExternalSource source;
        std::optional<QString> language;
        FindCompletion completion;
        std::optional<base::Error> failure;
        quint64 lookup = 0;
    };
    struct Picture
    {
        QString id;
        ImageKind kind;
        QSize size;
        std::optional<QString> language;
        ImageCompletion completion;
        std::optional<base::Error> failure;
        quint64 lookup = 0;
    };

    QList<Source> sources;
    quint64 lastLookup = 0;

    /// The first source from `start` on that may be asked; the number of sources when there is none.
    qsizetype next(qsizetype start) const
    {
        while (start < sources.size() && sources[start].isAsked && !sources[start].isAsked())
            ++start;
        return start;
    }

    /// Only the latest lookup asks further sources: a source may abandon one lookup when it is asked for
    /// another, and would abandon the one that the person waits for.
    bool mayGoOn(quint64 lookup) const { return lookup == lastLookup; }

    void find(qsizetype start, const std::shared_ptr<Find> &task)
    {
        const qsizetype index = next(start);
        if (index == sources.size()) {
            MainQueue::shared().async([task] {
                task->completion(task->failure ? Result<FindResult>(*task->failure)
                                               : Result<FindResult>(FindResult()));
            });
            return;
        }
        if (mayGoOn(task->lookup))
            askForFilm(index, task);
    }

    void askForFilm(qsizetype index, const std::shared_ptr<Find> &task)
    {
        sources[index].service->preferredLanguage = task->language;
        sources[index].service->findExternally(
            task->id, task->source, [weak = weak_from_this(), index, task](const Result<FindResult> &answer) {
                if (const auto self = weak.lock())
                    self->takeFind(index, task, answer);
            });
    }

    void takeFind(qsizetype index, const std::shared_ptr<Find> &task, const Result<FindResult> &answer)
    {
        if (answer && !isEmpty(*answer)) {
            FindResult result = *answer;
            wrap(result.movieResults, index, task->id, task->lookup);
            wrap(result.personResults, index, task->id, task->lookup);
            wrap(result.tvResults, index, task->id, task->lookup);
            task->completion(result);
            return;
        }
        if (!answer && !task->failure)
            task->failure = answer.error();
        find(index + 1, task);
    }

    void fetch(qsizetype index, const TmdbItem &item, const std::shared_ptr<Picture> &task)
    {
        sources[index].service->fetchImage(
            item, task->kind, task->size,
            [weak = weak_from_this(), index, task](const Result<QImage> &image) {
                const auto self = weak.lock();
                if (!self)
                    return;
                if (image)
                    task->completion(image);
                else
                    self->fetchElsewhere(index + 1, task, image.error());
            });
    }

    void fetchElsewhere(qsizetype start, const std::shared_ptr<Picture> &task, const base::Error &error)
    {
        if (!task->failure)
            task->failure = error;
        const qsizetype index = next(start);
        if (index == sources.size()) {
            task->completion(*task->failure);
            return;
        }
        if (!mayGoOn(task->lookup))
            return;
        sources[index].service->preferredLanguage = task->language;
        sources[index].service->findExternally(
            task->id, ExternalSource::imdb,
            [weak = weak_from_this(), index, task](const Result<FindResult> &found) {
                const auto self = weak.lock();
                if (!self)
                    return;
                const QList<TmdbItem> items =
                    found ? found->movieResults + found->tvResults : QList<TmdbItem>();
                if (items.isEmpty())
                    self->fetchElsewhere(index + 1, task, *task->failure);
                else
                    self->fetch(index, items.first(), task);
            });
    }
};

CombinedMetadataService::CombinedMetadataService(const QList<Source> &sources)
    : m_chain(std::make_shared<Chain>())
{
    m_chain->sources = sources;
}

CombinedMetadataService::~CombinedMetadataService() = default;

void CombinedMetadataService::findExternally(const QString &id, ExternalSource source,
                                             FindCompletion completion)
{
    m_chain->find(
        0, std::make_shared<Chain::Find>(Chain::Find{id, source, preferredLanguage, std::move(completion),
                                                     std::nullopt, ++m_chain->lastLookup}));
}

void CombinedMetadataService::fetchImage(const TmdbItem &item, ImageKind kind, const QSize &size,
                                         ImageCompletion completion)
{
    const QVariantMap handle = item.handle.toMap();
    const qsizetype index = handle.value(IndexKey, -1).toLongLong();
    if (index < 0 || index >= m_chain->sources.size()) {
        MainQueue::shared().async([completion = std::move(completion)] { completion(noPicture()); });
        return;
    }
    const auto task = std::make_shared<Chain::Picture>(
        Chain::Picture{handle.value(IdKey).toString(), kind, size, preferredLanguage, std::move(completion),
                       std::nullopt, handle.value(LookupKey).toULongLong()});
    m_chain->fetch(index, {handle.value(HandleKey)}, task);
}
