#pragma once
#include <base/Result.h>
#include <QList>
#include <functional>

/// What is in a catalogue, read beside whoever writes it.
namespace CatalogueReports
{
struct Line
{
    QString release;
    QString language;
    QString format;
    QString source; // the file it came from; empty for what came otherwise
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

/// Hands over the subtitles in the order they were entered, until `take` says no. An empty language stands
/// for all.
Result<void> list(const QString &path, const QString &language,
                  const std::function<bool(const Line &)> &take);
Result<Figures> figures(const QString &path);
/// What a check of the whole file finds wrong; empty when it is sound.
Result<QStringList> faults(const QString &path);
} // namespace CatalogueReports
