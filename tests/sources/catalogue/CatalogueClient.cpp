#include "CatalogueClient.h"

#include <base/MainQueue.h>

#include <QFile>
#include <QTest>

const QString Hash = QStringLiteral("00112233445566ff");

namespace
{
constexpr int TimeoutMilliseconds = 20000;

QStringList releases(const Result<QueryResult> &result)
{
    QStringList names;
    if (!result)
        return {QStringLiteral("error: ") + result.error().localizedDescription};
    for (const SubtitlePtr &subtitle : *result->subtitles)
        names += subtitle->subFileName;
    return names;
}

Result<QueryResult> answerTo(SubtitleService &service, const QList<Arg> &args)
{
    // Shared, because an answer that came too late would still arrive.
    const auto answers = std::make_shared<Answers>();
    service.query(args,
                  [answers, completion = answers->completion()](const auto &result) { completion(result); });
    if (!QTest::qWaitFor([&] { return answers->count() == 1; }, TimeoutMilliseconds))
        return base::Error{QStringLiteral("test"), 0, QStringLiteral("no answer")};
    return answers->last();
}
} // namespace

CatalogueHome::CatalogueHome(const Sandbox &sandbox)
    : m_sandbox(sandbox),
      m_starter(sandbox.path(QStringLiteral("starter.sqlite"))),
      m_own(sandbox.path(QStringLiteral("own.sqlite")))
{
}

void CatalogueHome::reset() const
{
    CatalogueFixture starter(m_sandbox, QStringLiteral("starter.sqlite"));
    starter.film({QStringLiteral("Harbour Lights")}, 2019)
        .subtitle(QStringLiteral("Lights.DVDRip"), 9000)
        .subtitle(QStringLiteral("Lights.1080p.BluRay"), 20)
        .subtitle(QStringLiteral("Lights.exact"), 1)
        .madeFor(Hash, Size)
        .subtitle(QStringLiteral("Lights.web"), 500)
        .subtitle(QStringLiteral("Luzes"), 3, "pob");
    starter.film({QStringLiteral("Harbour Lights Revisited")}, 2022)
        .subtitle(QStringLiteral("Revisited"), 99999);
    starter.write();
    QFile::remove(m_own);
    MainQueue::shared().clear();
}

std::shared_ptr<CatalogueService> CatalogueHome::service() const
{
    return service({{m_starter, Presence::Required}, {m_own, Presence::Optional}});
}

std::shared_ptr<CatalogueService> CatalogueHome::service(const QList<CataloguePlace> &places) const
{
    return std::make_shared<CatalogueService>(places,
                                              DownloadFolder(m_sandbox.path(QStringLiteral("downloads"))));
}

SubtitleService::QueryCompletion Answers::completion()
{
    return [this](const Result<QueryResult> &result) {
        const std::scoped_lock lock(m_mutex);
        m_results += result;
        m_threads += std::this_thread::get_id();
    };
}

qsizetype Answers::count() const
{
    const std::scoped_lock lock(m_mutex);
    return m_results.size();
}

Result<QueryResult> Answers::last() const
{
    const std::scoped_lock lock(m_mutex);
    return m_results.last();
}

std::thread::id Answers::lastThread() const
{
    const std::scoped_lock lock(m_mutex);
    return m_threads.last();
}

QList<Arg> textQuery(const QString &text, const QString &language)
{
    return {{Param::text, text}, {Param::language, language}};
}

QList<Arg> videoQuery(const QString &hash, quint64 size, const QString &language)
{
    return {{Param::byteSize, QString::number(size)}, {Param::movieHash, hash}, {Param::language, language}};
}

QStringList ask(SubtitleService &service, const QList<Arg> &args)
{
    return releases(answerTo(service, args));
}

QList<SubtitlePtr> found(SubtitleService &service, const QList<Arg> &args)
{
    const Result<QueryResult> answer = answerTo(service, args);
    return answer ? *answer->subtitles : QList<SubtitlePtr>();
}

SubtitlePtr firstOf(SubtitleService &service, const QList<Arg> &args)
{
    return found(service, args).value(0);
}

Result<QUrl> fetch(SubtitleService &service, const SubtitlePtr &subtitle)
{
    struct Slot
    {
        std::mutex mutex;
        std::optional<Result<QUrl>> answer;

        bool isFilled()
        {
            const std::scoped_lock lock(mutex);
            return answer.has_value();
        }
    };
    const auto slot = std::make_shared<Slot>();
    service.download(subtitle, [slot](const Result<QUrl> &result) {
        const std::scoped_lock lock(slot->mutex);
        slot->answer = result;
    });
    if (!QTest::qWaitFor([&] { return slot->isFilled(); }, TimeoutMilliseconds))
        return base::Error{QStringLiteral("test"), 0, QStringLiteral("no answer")};
    return *slot->answer;
}
