#pragma once
#include <base/Result.h>
#include <QStringList>
#include <functional>

/// Reports on a catalogue's content, which may be read while another process writes. Every row is a line of
/// the terminal, in columns.
namespace CatalogueReports
{
/// Passes release, language, format and source file (empty when it came from no file) of the subtitles to
/// `take` in the order of insertion until it returns false. An empty language means all.
Result<void> list(const QString &path, const QString &language,
                  const std::function<bool(const QStringList &)> &take);

/// The numbers of bytes, rows and unfinished sources, and the subtitles of each language and format, the most
/// frequent first.
Result<QList<QStringList>> figures(const QString &path);
} // namespace CatalogueReports
