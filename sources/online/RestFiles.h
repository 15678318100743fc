#pragma once
#include <base/Result.h>
#include <media/subtitles/SubtitleFile.h>
#include <model/Subtitle.h>
#include <net/DiskCache.h>
#include <QUrl>

class DownloadFolder;

/// Checks, caches and publishes fetched files on the worker. Plain functions, any thread.
namespace RestFiles
{
/// The subtitle's file, if it is still cached and valid.
std::optional<SubtitleFile> find(const DiskCache &kept, const Subtitle &subtitle, const QDateTime &date);
/// A fetched file, and whether it was cached.
struct TakenFile
{
    SubtitleFile file;
    bool isKept = false;
};
/// Checks and caches a fetched file; an Error when it is not a subtitle.
Result<TakenFile> take(const DiskCache &kept, const Subtitle &subtitle, const QDateTime &date,
                       const QByteArray &bytes);
/// Writes `count` copies, each into a separate folder.
Result<QList<QUrl>> publish(const DownloadFolder &downloads, const QString &name, const QByteArray &content,
                            qsizetype count);
} // namespace RestFiles
