#pragma once
#include <base/MainQueue.h>
#include <net/ServiceError.h>
#include <sources/combined/CombinedSubtitleService.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/timing/Caught.h>

#include <atomic>

/// A service that answers when the test says.
class ScriptedService final : public SubtitleService
{
public:
    void query(const QList<Arg> &args, QueryCompletion completion) override
    {
        queries += args;
        waiting += std::move(completion);
    }
    void cancelQueryTask() override { ++cancels; }
    void download(const SubtitlePtr &subtitle, DownloadCompletion completion) override
    {
        downloads += subtitle;
        completion(QUrl(QStringLiteral("file:///downloaded")));
    }
    void cancelDownloads() override { ++downloadCancels; }

    QList<QList<Arg>> queries;
    QList<QueryCompletion> waiting;
    QList<SubtitlePtr> downloads;
    int cancels = 0;
    int downloadCancels = 0;
};

inline SubtitlePtr subtitle(const QString &service, const QString &name, bool matches = false)
{
    auto made = std::make_shared<Subtitle>();
    made->service = service;
    made->subFileName = name;
    made->fileID = name;
    made->subFormat = QStringLiteral("srt");
    made->matchesHash = matches;
    return made;
}

inline QueryResult rows(const QList<SubtitlePtr> &subtitles)
{
    return {subtitles};
}

inline base::Error failure(ServiceFailure kind)
{
    return serviceError(kind, ServiceName::Subtitles, {});
}

/// So many rows, or a failure of the kind that stands below zero.
inline Result<QueryResult> made(int what, const QString &service)
{
    if (what < 0)
        return failure(static_cast<ServiceFailure>(-what));
    QList<SubtitlePtr> list;
    for (int i = 0; i < what; ++i)
        list += subtitle(service, service + QString::number(i));
    return rows(list);
}

inline const QList<Arg> Words{{Param::text, QStringLiteral("paper lighthouse")},
                              {Param::language, QStringLiteral("eng")}};
inline const QList<Arg> Hash{{Param::byteSize, QStringLiteral("5")},
                             {Param::movieHash, QStringLiteral("8e245d9679d31e12")},
                             {Param::language, QStringLiteral("eng")}};

/// The base of tests of the service with two scripted sources.
class CombinedFixture : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init()
    {
        m_catalogue = std::make_shared<ScriptedService>();
        m_rest = std::make_shared<ScriptedService>();
        m_names = std::make_shared<VideoNames>();
        m_asksRest = true;
        m_answers = 0;
        m_last.reset();
        m_combined = std::make_unique<CombinedSubtitleService>(
            QList<CombinedSubtitleService::Source>{
                {QStringLiteral("catalogue"), m_catalogue, {}},
                {QStringLiteral("rest"), m_rest, [this] { return m_asksRest; }}},
            m_names, [] { return RankingPreferences(); });
    }
    void cleanup() { m_combined.reset(); }

protected:
    SubtitleService::QueryCompletion answer()
    {
        return [this](const Result<QueryResult> &result) {
            m_last = std::make_unique<Result<QueryResult>>(result);
            ++m_answers;
        };
    }
    void query(const QList<Arg> &args = Words) { m_combined->query(args, answer()); }

    QStringList names() const
    {
        QStringList result;
        for (const SubtitlePtr &one : (*m_last)->subtitles.value())
            result += one->subFileName;
        return result;
    }

    Sandbox m_sandbox;
    std::shared_ptr<ScriptedService> m_catalogue;
    std::shared_ptr<ScriptedService> m_rest;
    std::shared_ptr<VideoNames> m_names;
    bool m_asksRest = true;
    std::unique_ptr<Result<QueryResult>> m_last; // written before m_answers, read after it
    std::atomic<int> m_answers = 0;
    std::unique_ptr<CombinedSubtitleService> m_combined;
};
