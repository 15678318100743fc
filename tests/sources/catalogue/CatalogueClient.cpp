#include "CatalogueClient.h"

namespace
{
Result<QueryResult> answerTo(SubtitleService &service, const QList<Arg> &args)
{
    return Answers<QueryResult>::awaited(
        [&](const SubtitleService::QueryCompletion &completion) { service.query(args, completion); });
}
} // namespace

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
    const Result<QueryResult> result = answerTo(service, args);
    if (!result)
        return {QStringLiteral("error: ") + result.error().localizedDescription};
    QStringList names;
    for (const SubtitlePtr &subtitle : *result->subtitles)
        names += subtitle->subFileName;
    return names;
}

QList<SubtitlePtr> found(SubtitleService &service, const QList<Arg> &args)
{
    const Result<QueryResult> answer = answerTo(service, args);
    return answer ? *answer->subtitles : QList<SubtitlePtr>();
}

Result<QUrl> fetch(SubtitleService &service, const SubtitlePtr &subtitle)
{
    return Answers<QUrl>::awaited([&](const SubtitleService::DownloadCompletion &completion) {
        service.download(subtitle, completion);
    });
}
