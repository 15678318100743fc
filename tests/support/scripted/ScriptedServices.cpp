#include "ScriptedServices.h"

#include <base/MainQueue.h>

#include <thread>

namespace
{
using namespace Qt::StringLiterals;

void runOn(AnswerOn thread, const std::function<void()> &answer)
{
    if (thread == AnswerOn::MainThread) {
        answer();
        return;
    }
    std::thread(answer).join();
}
} // namespace

std::shared_ptr<ScriptedSubtitleService> ScriptedSubtitleService::install()
{
    auto service = std::make_shared<ScriptedSubtitleService>();
    SubtitleService::setShared(service);
    return service;
}

void ScriptedSubtitleService::query(const QList<Arg> &args, QueryCompletion completion)
{
    if (answer)
        MainQueue::shared().async([=, result = answer(args)] { completion(result); });
    else
        m_open[queries.size()] = std::move(completion);
    queries += args;
}

void ScriptedSubtitleService::download(const SubtitlePtr &subtitle, DownloadCompletion completion)
{
    if (file)
        MainQueue::shared().async([=, result = *file] { completion(result); });
    m_downloads.push_back({subtitle, std::move(completion)});
}

void ScriptedSubtitleService::cancelDownloads()
{
    ++downloadCancellations;
    for (Download &download : m_downloads)
        download.completion = [](const Result<QUrl> &) {};
}

SubtitleService::QueryCompletion ScriptedSubtitleService::takeCompletion(qsizetype index)
{
    auto entry = m_open.extract(index);
    return entry ? std::move(entry.mapped()) : QueryCompletion([](const auto &) {});
}

SubtitleService::DownloadCompletion ScriptedSubtitleService::takeDownloadCompletion(qsizetype index)
{
    return std::move(m_downloads.at(static_cast<std::size_t>(index)).completion);
}

void ScriptedSubtitleService::finish(qsizetype index, const Result<QueryResult> &result, AnswerOn thread)
{
    runOn(thread, [completion = takeCompletion(index), &result] { completion(result); });
}

void ScriptedSubtitleService::finishLast(const Result<QueryResult> &result, AnswerOn thread)
{
    finish(queries.size() - 1, result, thread);
}

void ScriptedSubtitleService::finishDownload(qsizetype index, const Result<QUrl> &result, AnswerOn thread)
{
    runOn(thread, [completion = takeDownloadCompletion(index), &result] { completion(result); });
}

std::shared_ptr<ScriptedMetadataService> ScriptedMetadataService::install()
{
    auto service = std::make_shared<ScriptedMetadataService>();
    MetadataService::setShared(service);
    return service;
}

void ScriptedMetadataService::findExternally(const QString &id, ExternalSource, FindCompletion completion)
{
    finds += id;
    if (answer)
        MainQueue::shared().async([=, result = answer(id)] { completion(result); });
    findCompletions.push_back(std::move(completion));
}

void ScriptedMetadataService::fetchImage(const TmdbItem &item, ImageKind, const QSize &size,
                                         ImageCompletion completion)
{
    fetchedItems += item;
    fetchSizes += size;
    if (picture)
        MainQueue::shared().async([=, result = picture(item, size)] { completion(result); });
    imageCompletions.push_back(std::move(completion));
}

QList<SubtitlePtr> someSubtitles(int count, const QString &format)
{
    QList<SubtitlePtr> subtitles;
    for (int number = 1; number <= count; ++number) {
        auto subtitle = std::make_shared<Subtitle>();
        subtitle->subFileName = u"Film.%1"_s.arg(number);
        subtitle->languageName = u"English"_s;
        subtitle->subFormat = format;
        subtitle->subLanguageID = u"eng"_s;
        subtitle->imdbID = u"tt%1"_s.arg(9'000'000 + number);
        subtitle->title = u"Film"_s;
        subtitles += subtitle;
    }
    return subtitles;
}

Result<QueryResult> answerWith(const QList<SubtitlePtr> &subtitles)
{
    return QueryResult{subtitles};
}

Result<QueryResult> answerWith(int count)
{
    return answerWith(someSubtitles(count));
}
