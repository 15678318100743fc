#pragma once
#include <QList>
#include <QUrl>
#include <optional>

class QMimeData;

/// The URLs that a pasteboard holds under `type` (a list of lines, "#" begins a comment). None without a
/// pasteboard or content, or when a line is not a URL.
std::optional<QList<QUrl>> readURLs(const QMimeData *pasteboard, const QString &type);

/// Whether the pasteboard offers a file under `type`. Links to pages have the same type, so at least one line
/// must be a file URL.
bool offersFile(const QMimeData *pasteboard, const QString &type);
