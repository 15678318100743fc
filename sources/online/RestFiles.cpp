#include "RestFiles.h"

#include <base/DownloadFolder.h>
#include <base/LocalizedString.h>
#include <net/ServiceError.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr std::chrono::seconds KeptFor = 7 * 24h;
// A message of the service may look like a subtitle of a line or two.
constexpr qsizetype FewestBytes = 100;

base::Error refusal(SubtitleFile::Failure failure)
{
    const auto refused = [](const QString &detail, const QString &sentence = {}) {
        base::Error error = serviceError(ServiceFailure::NotASubtitle, ServiceName::Subtitles, detail);
        if (!sentence.isEmpty())
            error.localizedDescription = sentence;
        return error;
    };
    switch (failure) {
    case SubtitleFile::Failure::TooLarge:
        return refused(u"too large for a subtitle"_s);
    case SubtitleFile::Failure::Damaged:
        return refused(u"a damaged archive"_s);
    case SubtitleFile::Failure::Empty:
        return refused(
            u"an empty file"_s,
            String::localize(u"This subtitle is broken at the service: it is empty. Choose another one."_s));
    case SubtitleFile::Failure::UnknownArchive:
        return refused(u"an archive of another kind"_s,
                       String::localize(u"This subtitle comes in an archive that cannot be opened here. "
                                        "Choose another one."_s));
    default:
        return refused(u"no cue of any known format"_s);
    }
}
} // namespace

std::optional<SubtitleFile> RestFiles::find(const DiskCache &kept, const Subtitle &subtitle,
                                            const QDateTime &date)
{
    const std::optional<DiskCache::Entry> entry = kept.find(subtitle.fileID, date);
    if (!entry)
        return std::nullopt;
    SubtitleFile file = SubtitleFile::read(entry->body, subtitle.subLanguageID);
    return file.failure == SubtitleFile::Failure::None ? std::optional(file) : std::nullopt;
}

Result<RestFiles::TakenFile> RestFiles::take(const DiskCache &kept, const Subtitle &subtitle,
                                             const QDateTime &date, const QByteArray &bytes)
{
    SubtitleFile file = SubtitleFile::read(bytes, subtitle.subLanguageID);
    if (file.failure != SubtitleFile::Failure::None)
        return refusal(file.failure);
    if (file.original.size() < FewestBytes)
        return refusal(SubtitleFile::Failure::NoSubtitle);
    const bool isKept = kept.store(subtitle.fileID, {file.original, {}, date, date.addDuration(KeptFor)});
    return TakenFile{std::move(file), isKept};
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
