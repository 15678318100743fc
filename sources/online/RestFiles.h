#pragma once
#include <base/Result.h>
#include <media/subtitles/SubtitleFile.h>
#include <model/Subtitle.h>
#include <net/DiskCache.h>
#include <QUrl>

class DownloadFolder;

/// What is done with fetched files on the worker: checking, keeping, handing out. Plain functions, any
/// thread.
namespace RestFiles
{
/// The file kept under `key`, if it is still there and good. `language` is the subtitle's.
std::optional<SubtitleFile> find(const DiskCache &kept, const QString &key, const QString &language,
                                 const QDateTime &date);
/// A file that came, and whether it is in the cache now.
struct TakenFile
{
    SubtitleFile file;
    bool isKept = false;
};
/// Checks what came and keeps it; an Error for what is no subtitle.
Result<TakenFile> take(const DiskCache &kept, const QString &key, const QString &language,
                       const QDateTime &date, const QByteArray &bytes);
/// The plain name it is handed out under.
QString nameOf(const Subtitle &subtitle, const SubtitleFile &file);
/// Writes that many copies, each in a folder of its own.
Result<QList<QUrl>> publish(const DownloadFolder &downloads, const QString &name, const QByteArray &content,
                            qsizetype count);
} // namespace RestFiles
