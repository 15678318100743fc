#pragma once
#include <base/Result.h>
#include <QList>
#include <functional>

/// Reports on a catalogue's content, which may be read while another process writes.
namespace CatalogueReports
{
struct Line
{
    QString release;
    QString language;
    QString format;
    QString source; // the file it came from; empty when it came from no file
};

struct Figures
{
    qint64 subtitles = 0;
    qint64 films = 0;
    qint64 titles = 0;
    qint64 videos = 0;
    qint64 sources = 0;
    qint64 unfinishedSources = 0;
    qint64 bytes = 0;
    QList<std::pair<QString, qint64>> languages; // the most frequent first
    QList<std::pair<QString, qint64>> formats;
};

/// Passes the subtitles to `take` in the order of insertion until it returns false. An empty language means
/// all.
Result<void> list(const QString &path, const QString &language,
                  const std::function<bool(const Line &)> &take);
Result<Figures> figures(const QString &path);
/// The faults that a check of the whole file finds; empty when it is sound.
Result<QStringList> faults(const QString &path);
} // namespace CatalogueReports
