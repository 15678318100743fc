#include "KeywordServices.h"

#include <base/FileManager.h>
#include <base/MainQueue.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <thread>

namespace
{
using namespace Qt::StringLiterals;

constexpr quint64 ScriptedSize = 1'000'000;

base::Error refusal()
{
    return base::Error{u"Scripted"_s, 1, u"The scripted service refuses."_s};
}

Result<QueryResult> resultFor(const QString &words)
{
    if (words.contains(u"refuse"_s))
        return refusal();
    if (words.contains(u"nothing"_s))
        return QueryResult{QList<SubtitlePtr>()};
    static const QRegularExpression number(u"\\d+"_s);
    const QString digits = number.match(words).captured();
    const int count = digits.isEmpty() ? 3 : digits.toInt();
    QList<SubtitlePtr> subtitles;
    subtitles.reserve(count);
    for (int row = 1; row <= count; ++row) {
        auto subtitle = std::make_shared<Subtitle>();
        subtitle->subFileName = u"Result.%1.%2"_s.arg(row).arg(words.simplified().replace(u' ', u'.'));
        subtitle->title = u"Scripted film"_s;
        subtitle->languageName = u"English"_s;
        subtitle->subFormat = u"srt"_s;
        subtitle->subLanguageID = u"eng"_s;
        subtitles += subtitle;
    }
    return QueryResult{subtitles};
}
void answer(const QString &words, const std::function<void()> &give)
{
    if (!words.contains(u"never"_s))
        std::thread(give).detach();
}
} // namespace

void KeywordSubtitleService::query(const QList<Arg> &args, QueryCompletion completion)
{
    const bool byText = args.first().param == Param::text;
    const QString words = byText ? args.first().value : m_hashedName;
    note(args.last().value + u' ' + words);
    answer(words, [words, completion = std::move(completion)] { completion(resultFor(words)); });
}

void KeywordSubtitleService::note(const QString &query) const
{
    QFile file(m_folder + u".queries"_s);
    if (file.open(QIODevice::Append))
        file.write(query.toUtf8() + '\n');
}

void KeywordSubtitleService::download(const SubtitlePtr &subtitle, DownloadCompletion completion)
{
    const QString words = subtitle->subFileName;
    const QString path = u"%1/download%2/%3.srt"_s.arg(m_folder).arg(++m_downloads).arg(words);
    answer(words, [words, path, completion = std::move(completion)] {
        if (words.contains(u"refuse"_s)) {
            completion(refusal());
            return;
        }
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write("1\n00:00:01,000 --> 00:00:02,000\nScripted\n");
        file.close();
        completion(QUrl::fromLocalFile(path));
    });
}

std::optional<VideoHash> KeywordSubtitleService::computeHash(const QUrl &url)
{
    const QString name = FileManager::displayName(url);
    if (!name.endsWith(u".mkv"_s))
        return std::nullopt;
    m_hashedName = name.chopped(4);
    return VideoHash{u"0123456789abcdef"_s, ScriptedSize};
}

VideoFileComponents KeywordSubtitleService::componentsOf(const QUrl &url)
{
    const QString words = FileManager::displayName(url).section(u'.', 0, -2).replace(u'.', u' ');
    return {.searchString = words, .title = words};
}

void EmptyMetadataService::findExternally(const QString &, ExternalSource, FindCompletion completion)
{
    MainQueue::shared().async([completion = std::move(completion)] { completion(FindResult{}); });
}

void EmptyMetadataService::fetchImage(const TmdbItem &, ImageKind, const QSize &, ImageCompletion completion)
{
    MainQueue::shared().async([completion = std::move(completion)] { completion(refusal()); });
}
