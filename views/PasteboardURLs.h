#pragma once
#include <QList>
#include <QUrl>
#include <optional>

class QMimeData;

/// The URLs a pasteboard holds under `type` (a list of lines, "#" beginning a comment). Nothing when there is
/// no pasteboard or no such content, or when any line is no URL.
std::optional<QList<QUrl>> readURLs(const QMimeData *pasteboard, const QString &type);
