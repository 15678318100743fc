#include "RestFiles.h"

#include <base/DownloadFolder.h>
#include <base/LocalizedString.h>
#include <base/SafeFileName.h>
#include <net/ServiceError.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr std::chrono::hours KeptFor = 7 * 24h;
// A message of the service may look like a subtitle of a line or two.
constexpr qsizetype FewestBytes = 100;

base::Error refusal(SubtitleFile::Failure failure)
{
    switch (failure) {
    case SubtitleFile::Failure::TooLarge:
        return serviceError(ServiceFailure::NotASubtitle, ServiceName::Subtitles,
                            u"too large for a subtitle"_s);
    case SubtitleFile::Failure::Damaged:
        return serviceError(ServiceFailure::NotASubtitle, ServiceName::Subtitles, u"a damaged archive"_s);
    case SubtitleFile::Failure::Empty: {
        base::Error error =
            serviceError(ServiceFailure::NotASubtitle, ServiceName::Subtitles, u"an empty file"_s);
        error.localizedDescription =
            String::localize(u"This subtitle is broken at the service: it is empty. Choose another one."_s);
        return error;
    }
    case SubtitleFile::Failure::UnknownArchive: {
        base::Error error = serviceError(ServiceFailure::NotASubtitle, ServiceName::Subtitles,
                                         u"an archive of another kind"_s);
        error.localizedDescription = String::localize(
            u"This subtitle comes in an archive that cannot be opened here. Choose another one."_s);
        return error;
    }
    default:
        return serviceError(ServiceFailure::NotASubtitle, ServiceName::Subtitles,
                            u"no cue of any known format"_s);
    }
}
} // namespace

std::optional<SubtitleFile> RestFiles::find(const DiskCache &kept, const QString &key,
                                            const QString &language, const QDateTime &date)
{
    const std::optional<DiskCache::Entry> entry = kept.find(key, date);
    if (!entry)
        return std::nullopt;
    SubtitleFile file = SubtitleFile::read(entry->body, language);
    if (file.failure != SubtitleFile::Failure::None)
        return std::nullopt;
    return file;
}

Result<RestFiles::TakenFile> RestFiles::take(const DiskCache &kept, const QString &key,
                                             const QString &language, const QDateTime &date,
                                             const QByteArray &bytes)
{
    SubtitleFile file = SubtitleFile::read(bytes, language);
    if (file.failure != SubtitleFile::Failure::None)
        return refusal(file.failure);
    if (file.original.size() < FewestBytes)
        return refusal(SubtitleFile::Failure::NoSubtitle);
    const bool isKept =
        kept.store(key, {file.original, {}, date, date.addDuration(std::chrono::seconds(KeptFor))});
    return TakenFile{std::move(file), isKept};
}

QString RestFiles::nameOf(const Subtitle &subtitle, const SubtitleFile &file)
{
    return safeFileName(subtitle.subFileName, file.extension);
}

Result<QList<QUrl>> RestFiles::publish(const DownloadFolder &downloads, const QString &name,
                                       const QByteArray &content, qsizetype count)
{
    QList<QUrl> files;
    for (qsizetype i = 0; i < count; ++i) {
        const Result<QUrl> file = downloads.publish(name, content);
        if (!file)
            return file.error();
        files += *file;
    }
    return files;
}
