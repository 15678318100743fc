#pragma once
#include <model/SubtitleService.h>
#include <net/ServiceError.h>

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
