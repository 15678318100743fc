#include "FilmDatabase.h"

#include "FilmErrors.h"
#include "FilmLanguage.h"

#include <base/WorkerThread.h>
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
constexpr int PicturesAtOnce = 2;
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
                               const QMap<QString, QString> &items)
{
    CachedFetch::Question question;
    question.request = settings.request(path, items);
    question.rules = settings.apiHosts();
    question.key = settings.cacheKey(path, items);
    question.life = AnswerLife;
    question.longestLife = LongestAnswerLife;
    return question;
}

/// A missing film is an answer without films, not a failure.
Result<FindResult> answerFor(const base::Error &error)
{
    return kindOf(error) == ServiceFailure::NotFound ? Result<FindResult>(FindResult())
                                                     : Result<FindResult>(error);
}
} // namespace

/// One task of a caller; holds its running calls.
struct FilmDatabase::Task
{
    FilmSettings settings; // used until the task ends, like the language
    QString language;
    CachedFetch::Call call;
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

FilmDatabase::~FilmDatabase()
{
    m_tasks.clear();
    m_worker.reset();
}

void FilmDatabase::setSettings(const FilmSettings &settings)
{
    m_settings = settings;
    hideSecret(settings.key);
}

void FilmDatabase::dropLookup()
{
    m_tasks.clear();
    m_waitingPictures.clear();
    m_picturesUnderWay = 0;
}

std::shared_ptr<FilmDatabase::Task> FilmDatabase::newTask()
{
    m_tasks.push_back(
        std::make_shared<Task>(Task{m_settings, filmLanguage(preferredLanguage.value_or(u"en"_s)), {}}));
    return m_tasks.back();
}

void FilmDatabase::end(const std::shared_ptr<Task> &task)
{
    std::erase(m_tasks, task);
}

void FilmDatabase::findExternally(const QString &id, ExternalSource, FindCompletion completion)
{
    dropLookup();
    const std::optional<qint64> number = imdbNumber(id);
    if (!number || !hasKey()) {
        // An invalid id is answered like an unknown one.
        const Result<FindResult> answer =
            number ? Result<FindResult>(noKey()) : Result<FindResult>(FindResult());
        MainQueue::shared().async([completion = std::move(completion), answer] { completion(answer); });
        return;
    }
    const std::shared_ptr<Task> task = newTask();
    CachedFetch::Question asked =
        question(task->settings, u"/find/"_s + imdbId(*number),
                 {{u"external_source"_s, u"imdb_id"_s}, {u"language"_s, task->language}});
    asked.isGood = isFind;
    task->call = m_fetch.fetch(asked, [this, task = std::weak_ptr(task),
                                       completion = std::move(completion)](const Result<QByteArray> &body) {
        if (const auto held = task.lock())
            takeFind(held, body, completion);
    });
}

void FilmDatabase::takeFind(const std::shared_ptr<Task> &task, const Result<QByteArray> &body,
                            const FindCompletion &completion)
{
    const auto found = body ? FilmAnswers::readFind(*body) : std::nullopt;
    if (found && found->showOfEpisode) {
        askForShow(task, *found->showOfEpisode, completion);
        return;
    }
    end(task);
    const Result<FindResult> answer = found ? Result<FindResult>(found->result) : answerFor(body.error());
    MainQueue::shared().async([completion, answer] { completion(answer); });
}

void FilmDatabase::askForShow(const std::shared_ptr<Task> &task, qint64 show,
                              const FindCompletion &completion)
{
    CachedFetch::Question asked =
        question(task->settings, u"/tv/%1"_s.arg(show), {{u"language"_s, task->language}});
    asked.isGood = isShow;
    task->call =
        m_fetch.fetch(asked, [this, weak = std::weak_ptr(task), completion](const Result<QByteArray> &body) {
            const auto held = weak.lock();
            if (!held)
                return;
            end(held);
            const Result<FindResult> answer =
                body ? Result<FindResult>(FilmAnswers::readShow(*body).value_or(FindResult()))
                     : answerFor(body.error());
            MainQueue::shared().async([completion, answer] { completion(answer); });
        });
}

void FilmDatabase::fetchImage(const TmdbItem &item, ImageKind, const QSize &size, ImageCompletion completion)
{
    const QString path = FilmAnswers::posterPath(item);
    if (path.isEmpty()) {
        MainQueue::shared().async([completion = std::move(completion)] { completion(noPosterError()); });
        return;
    }
    m_waitingPictures.push_back({path, size, m_pixelRatio(), m_settings, std::move(completion)});
    startPictures();
}

void FilmDatabase::startPictures()
{
    while (m_picturesUnderWay < PicturesAtOnce && !m_waitingPictures.empty()) {
        const Picture picture = std::move(m_waitingPictures.front());
        m_waitingPictures.pop_front();
        ++m_picturesUnderWay;
        askForConfiguration(picture);
    }
}

void FilmDatabase::askForConfiguration(const Picture &picture)
{
    CachedFetch::Question asked = question(picture.settings, u"/configuration"_s, {});
    asked.life = LongestAnswerLife;
    asked.isGood = isConfiguration;
    const std::shared_ptr<Task> task = newTask();
    task->call =
        m_fetch.fetch(asked, [this, weak = std::weak_ptr(task), picture](const Result<QByteArray> &body) {
            const auto held = weak.lock();
            if (!held)
                return;
            FilmImages images = (body ? FilmImages::read(*body) : std::nullopt).value_or(FilmImages());
            if (!picture.settings.imageHosts().accepts(images.base))
                images = FilmImages();
            fetchPicture(held, picture, images);
        });
}

void FilmDatabase::fetchPicture(const std::shared_ptr<Task> &task, const Picture &picture,
                                const FilmImages &images)
{
    const int pixels = static_cast<int>(std::ceil(picture.size.width() * picture.ratio));
    CachedFetch::Question asked; // pictures need no key
    asked.request.url = images.address(images.posterSize(pixels), picture.path);
    asked.request.setHeader("Accept", "image/*");
    asked.request.maxBytes = MaxPictureBytes;
    asked.rules = picture.settings.imageHosts();
    asked.key = asked.request.url.toString();
    asked.life = PictureLife;
    asked.longestLife = PictureLife;
    asked.isGood = isPicture;
    task->call =
        m_fetch.fetch(asked, [this, weak = std::weak_ptr(task), picture](const Result<QByteArray> &body) {
            const auto held = weak.lock();
            if (!held)
                return;
            if (body)
                decode(held, picture, *body);
            else
                finishPicture(held, picture, body.error());
        });
}

void FilmDatabase::decode(const std::shared_ptr<Task> &task, const Picture &picture, const QByteArray &bytes)
{
    inBackground(
        *m_worker,
        [bytes, size = picture.size, ratio = picture.ratio] { return posterImage(bytes, size, ratio); },
        [this, weak = std::weak_ptr(task), picture](const QImage &image) {
            const auto held = weak.lock();
            if (!held)
                return;
            const base::Error error =
                serviceError(ServiceFailure::BadAnswer, ServiceName::Films, u"the picture cannot be read"_s);
            finishPicture(held, picture, image.isNull() ? Result<QImage>(error) : Result<QImage>(image));
        });
}

void FilmDatabase::finishPicture(const std::shared_ptr<Task> &task, const Picture &picture,
                                 const Result<QImage> &image)
{
    end(task);
    if (!image)
        qCInfo(log).noquote() << "no picture:" << image.error().detail;
    --m_picturesUnderWay;
    MainQueue::shared().async([completion = picture.completion, image] { completion(image); });
    startPictures();
}

void FilmDatabase::emptyCache()
{
    m_worker->post([cache = m_cache] { cache.clear(); });
}

void FilmDatabase::testKey(std::function<void(Result<void>)> completion)
{
    const auto answerLater = [completion = std::move(completion)](const Result<void> &answer) {
        MainQueue::shared().async([=] { completion(answer); });
    };
    if (!hasKey()) {
        answerLater(noKey());
        return;
    }
    m_test = m_queue.send(m_settings.request(u"/configuration"_s, {}), m_settings.apiHosts(),
                          [answerLater](const HttpResult &outcome) {
                              if (!outcome)
                                  answerLater(serviceError(outcome.error(), ServiceName::Films));
                              else if (!outcome->isSuccess())
                                  answerLater(filmError(*outcome));
                              else if (!isConfiguration(outcome->body))
                                  answerLater(serviceError(ServiceFailure::BadAnswer, ServiceName::Films,
                                                           u"no configuration"_s));
                              else
                                  answerLater({});
                          });
}
