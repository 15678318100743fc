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
    /// A film that is looked for in one source after the other.
    struct Search
    {
        QString id;
        std::optional<QString> language;
        quint64 lookup = 0;
        /// Takes the source that has the film and its answer; otherwise the first failure or nothing.
        std::function<void(qsizetype source, const Result<FindResult> &answer)> completion;
        Result<FindResult> otherwise = FindResult();
    };
    struct Picture
    {
        QString id;
        std::optional<QString> language;
        quint64 lookup = 0;
        ImageKind kind;
        QSize size;
        ImageCompletion completion;
        std::optional<base::Error> failure = {}; // the first one
    };

    QList<Source> sources;
    quint64 lastLookup = 0;

    void find(qsizetype start, const std::shared_ptr<Search> &search)
    {
        while (start < sources.size() && sources[start].isAsked && !sources[start].isAsked())
            ++start;
        if (start == sources.size()) {
            MainQueue::shared().async([weak = weak_from_this(), start, search] {
                if (!weak.expired())
                    search->completion(start, search->otherwise);
            });
            return;
        }
        // Only the latest lookup asks further sources: a source may abandon one lookup when it is asked for
        // another, and would abandon the one that the person waits for.
        if (search->lookup != lastLookup)
            return;
        MetadataService &service = *sources[start].service;
        service.preferredLanguage = search->language;
        service.findExternally(search->id, ExternalSource::imdb,
                               [weak = weak_from_this(), start, search](const Result<FindResult> &answer) {
                                   if (const auto self = weak.lock())
                                       self->takeFind(start, search, answer);
                               });
    }

    void takeFind(qsizetype index, const std::shared_ptr<Search> &search, const Result<FindResult> &answer)
    {
        if (answer && !isEmpty(*answer)) {
            search->completion(index, answer);
            return;
        }
        if (!answer && search->otherwise)
            search->otherwise = answer;
        find(index + 1, search);
    }

    void fetch(qsizetype index, const TmdbItem &item, const std::shared_ptr<Picture> &picture)
    {
        sources[index].service->fetchImage(
            item, picture->kind, picture->size,
            [weak = weak_from_this(), index, picture](const Result<QImage> &image) {
                const auto self = weak.lock();
                if (!self)
                    return;
                if (image)
                    picture->completion(image);
                else
                    self->fetchElsewhere(index + 1, picture, image.error());
            });
    }

    void fetchElsewhere(qsizetype start, const std::shared_ptr<Picture> &picture, const base::Error &error)
    {
        picture->failure = picture->failure.value_or(error);
        const auto taken = [this, picture](qsizetype index, const Result<FindResult> &found) {
            if (index < sources.size())
                fetch(index, (found->movieResults + found->tvResults).first(), picture);
            else
                picture->completion(*picture->failure);
        };
        find(start, std::make_shared<Search>(Search{picture->id, picture->language, picture->lookup, taken}));
    }
};

CombinedMetadataService::CombinedMetadataService(const QList<Source> &sources)
    : m_chain(std::make_shared<Chain>())
{
    m_chain->sources = sources;
}

CombinedMetadataService::~CombinedMetadataService() = default;

void CombinedMetadataService::findExternally(const QString &id, ExternalSource, FindCompletion completion)
{
    const quint64 lookup = ++m_chain->lastLookup;
    const auto taken = [id, lookup, completion = std::move(completion)](qsizetype index,
                                                                        const Result<FindResult> &answer) {
        if (!answer)
            return completion(answer);
        FindResult result = *answer;
        for (QList<TmdbItem> *items : {&result.movieResults, &result.personResults, &result.tvResults})
            wrap(*items, index, id, lookup);
        completion(result);
    };
    m_chain->find(0, std::make_shared<Chain::Search>(Chain::Search{id, preferredLanguage, lookup, taken}));
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
    const auto picture = std::make_shared<Chain::Picture>(
        Chain::Picture{handle.value(IdKey).toString(), preferredLanguage,
                       handle.value(LookupKey).toULongLong(), kind, size, std::move(completion)});
    m_chain->fetch(index, {handle.value(HandleKey)}, picture);
}
