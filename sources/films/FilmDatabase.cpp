#include "FilmDatabase.h"

#include "FilmAnswers.h"

#include <base/LocalizedString.h>
#include <media/PosterImage.h>
#include <model/ImdbNumber.h>
#include <net/Redactor.h>

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QStandardPaths>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.metadata", QtInfoMsg)

constexpr std::size_t RequestsPerSpan = 4;
constexpr Clock::Duration RateSpan = 1050ms;
constexpr std::size_t PicturesAtOnce = 2;
constexpr qsizetype MaxPictureBytes = 5LL * 1024 * 1024;
// The terms of use forbid keeping anything longer than six months.
constexpr std::chrono::hours KeptAtMost = 180 * 24h;
constexpr std::chrono::seconds AnswerLife = 24h;
constexpr std::chrono::seconds LongestAnswerLife = 7 * 24h;
constexpr std::chrono::seconds PictureLife = 30 * 24h;
constexpr qint64 MaxCacheBytes = 128LL * 1024 * 1024;

qreal screenPixelRatio()
{
    const auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    return application ? application->devicePixelRatio() : 1.0;
}

base::Error noKey()
{
    base::Error error = serviceError(ServiceFailure::KeyRefused, ServiceName::Films, u"no key is set"_s);
    error.localizedDescription =
        String::localize(u"The film database wants a key. Enter one in the preferences."_s);
    return error;
}

base::Error badAnswer(const QString &detail)
{
    return serviceError(ServiceFailure::BadAnswer, ServiceName::Films, detail);
}

bool isFind(const QByteArray &body)
{
    return FilmAnswers::readFind(body).has_value();
}
bool isShow(const QByteArray &body)
{
    return FilmAnswers::readShow(body).has_value();
}
bool isConfiguration(const QByteArray &body)
{
    return FilmImages::read(body).has_value();
}
bool isPicture(const QByteArray &body)
{
    return isWholePicture(body) && !posterImage(body, QSize(10, 15), 1).isNull();
}

CachedFetch::Question question(const FilmSettings &settings, const QString &path,
                               const QMap<QString, QString> &items, bool (*isGood)(const QByteArray &))
{
    return {settings.request(path, items),
            settings.apiHosts(),
            settings.cacheKey(path, items),
            AnswerLife,
            LongestAnswerLife,
            isGood};
}

CachedFetch::Question pictureQuestion(const FilmSettings &settings, const QUrl &url)
{
    HttpRequest request; // pictures need no key
    request.url = url;
    request.setHeader("Accept", "image/*");
    request.maxBytes = MaxPictureBytes;
    return {request, settings.imageHosts(), url.toString(), PictureLife, PictureLife, isPicture};
}

/// Calls the completion on a later turn.
template <class Value>
void give(const std::function<void(Result<Value>)> &completion, const Result<Value> &answer)
{
    MainQueue::shared().async([completion, answer] { completion(answer); });
}
} // namespace

/// Keeps the settings and the language until it ends, and its call: without that there is no answer.
struct FilmDatabase::Lookup
{
    FilmSettings settings;
    QString language;
    FindCompletion completion;
    CachedFetch::Call call = {};
};

struct FilmDatabase::Picture
{
    FilmSettings settings;
    QString path;
    QSize size;
    qreal ratio = 1;
    ImageCompletion completion;
    CachedFetch::Call call = {};
};

QString FilmDatabase::standardCacheFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/Plovendix/films"_L1;
}

FilmDatabase::FilmDatabase(Clock &clock, const FilmSettings &settings, const QString &cacheFolder,
                           std::function<qreal()> pixelRatio)
    : m_settings(settings),
      m_cache(cacheFolder, KeptAtMost),
      m_queue(clock, {RequestsPerSpan, RateSpan}),
      m_worker(std::make_unique<WorkerThread>()),
      m_fetch(m_queue, *m_worker, m_cache),
      m_pixelRatio(pixelRatio ? std::move(pixelRatio) : screenPixelRatio)
{
    hideSecret(settings.key);
    m_worker->post([cache = m_cache] { cache.prune(QDateTime::currentDateTimeUtc(), MaxCacheBytes); });
}

FilmDatabase::~FilmDatabase() = default;

void FilmDatabase::setSettings(const FilmSettings &settings)
{
    m_settings = settings;
    hideSecret(settings.key);
}

void FilmDatabase::findExternally(const QString &id, ExternalSource, FindCompletion completion)
{
    m_lookup.reset();
    m_pictures.clear();
    const std::optional<qint64> number = imdbNumber(id);
    if (!number)
        return give<FindResult>(completion, FindResult()); // like an unknown film
    if (!hasKey())
        return give<FindResult>(completion, noKey());
    m_lookup = std::make_unique<Lookup>(
        Lookup{m_settings, filmLanguage(preferredLanguage.value_or(u"en"_s)), std::move(completion)});
    m_lookup->call = m_fetch.fetch(
        question(m_lookup->settings, u"/find/"_s + imdbId(*number),
                 {{u"external_source"_s, u"imdb_id"_s}, {u"language"_s, m_lookup->language}}, isFind),
        [this](const Result<QByteArray> &body) { takeFind(body); });
}

void FilmDatabase::takeFind(const Result<QByteArray> &body)
{
    const auto found = body ? FilmAnswers::readFind(*body) : std::nullopt;
    if (!found || !found->showOfEpisode)
        return finishLookup(found ? Result<FindResult>(found->result) : body.error());
    m_lookup->call = m_fetch.fetch(question(m_lookup->settings, u"/tv/%1"_s.arg(*found->showOfEpisode),
                                            {{u"language"_s, m_lookup->language}}, isShow),
                                   [this](const Result<QByteArray> &show) { takeShow(show); });
}

void FilmDatabase::takeShow(const Result<QByteArray> &body)
{
    finishLookup(body ? Result<FindResult>(FilmAnswers::readShow(*body).value_or(FindResult()))
                      : body.error());
}

void FilmDatabase::finishLookup(const Result<FindResult> &answer)
{
    // A missing film is an answer without films, not a failure.
    const bool isMissing = !answer && kindOf(answer.error()) == ServiceFailure::NotFound;
    give(std::exchange(m_lookup, {})->completion, isMissing ? Result<FindResult>(FindResult()) : answer);
}

void FilmDatabase::fetchImage(const TmdbItem &item, ImageKind, const QSize &size, ImageCompletion completion)
{
    const QString path = FilmAnswers::posterPath(item);
    if (path.isEmpty())
        return give<QImage>(completion, FilmAnswers::noPosterError());
    m_pictures.push_back(
        std::make_shared<Picture>(Picture{m_settings, path, size, m_pixelRatio(), std::move(completion)}));
    startPictures();
}

void FilmDatabase::startPictures()
{
    for (std::size_t i = 0; i < std::min(m_pictures.size(), PicturesAtOnce); ++i) {
        const std::shared_ptr<Picture> picture = m_pictures[i];
        if (picture->call)
            continue;
        CachedFetch::Question asked = question(picture->settings, u"/configuration"_s, {}, isConfiguration);
        asked.life = LongestAnswerLife;
        picture->call = m_fetch.fetch(
            asked, [this, weak = std::weak_ptr(picture)](const Result<QByteArray> &configuration) {
                fetchPicture(weak.lock(), configuration);
            });
    }
}

void FilmDatabase::fetchPicture(const std::shared_ptr<Picture> &picture,
                                const Result<QByteArray> &configuration)
{
    FilmImages images =
        (configuration ? FilmImages::read(*configuration) : std::nullopt).value_or(FilmImages());
    if (!picture->settings.imageHosts().accepts(images.base))
        images = FilmImages();
    const int pixels = static_cast<int>(std::ceil(picture->size.width() * picture->ratio));
    const QUrl url = images.address(images.posterSize(pixels), picture->path);
    picture->call = m_fetch.fetch(pictureQuestion(picture->settings, url),
                                  [this, weak = std::weak_ptr(picture)](const Result<QByteArray> &body) {
                                      if (body)
                                          decode(weak.lock(), *body);
                                      else
                                          finishPicture(weak.lock(), body.error());
                                  });
}

void FilmDatabase::decode(const std::shared_ptr<Picture> &picture, const QByteArray &bytes)
{
    inBackground(
        *m_worker,
        [bytes, size = picture->size, ratio = picture->ratio] { return posterImage(bytes, size, ratio); },
        [this, weak = std::weak_ptr(picture)](const QImage &image) {
            if (const auto held = weak.lock())
                finishPicture(held, image.isNull()
                                        ? Result<QImage>(badAnswer(u"the picture cannot be read"_s))
                                        : Result<QImage>(image));
        });
}

void FilmDatabase::finishPicture(const std::shared_ptr<Picture> &picture, const Result<QImage> &image)
{
    if (!image)
        qCInfo(log).noquote() << "no picture:" << image.error().detail;
    give(picture->completion, image);
    std::erase(m_pictures, picture);
    startPictures();
}

void FilmDatabase::testKey(std::function<void(Result<void>)> completion)
{
    if (!hasKey())
        return give<void>(completion, noKey());
    m_test = m_queue.send(m_settings.request(u"/configuration"_s, {}), m_settings.apiHosts(),
                          [completion = std::move(completion)](const HttpResult &outcome) {
                              if (!outcome)
                                  give<void>(completion, serviceError(outcome.error(), ServiceName::Films));
                              else if (!outcome->isSuccess())
                                  give<void>(completion, FilmAnswers::errorOf(*outcome));
                              else
                                  give<void>(completion, isConfiguration(outcome->body)
                                                             ? Result<void>()
                                                             : badAnswer(u"no configuration"_s));
                          });
}
