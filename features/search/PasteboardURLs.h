#pragma once
#include <QList>
#include <QUrl>
#include <optional>

class QMimeData;

/// The URLs a pasteboard holds under `type` (a list of lines, "#" beginning a comment). Nothing when there is
/// no pasteboard or no such content, or when any line is no URL.
std::optional<QList<QUrl>> readURLs(const QMimeData *pasteboard, const QString &type);

/// Whether the pasteboard offers a file under `type`: links to pages travel under the same type, so at least
/// one line must be a file URL.
bool offersFile(const QMimeData *pasteboard, const QString &type);
