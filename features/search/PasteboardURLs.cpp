#include "PasteboardURLs.h"

#include <QMimeData>

#include <algorithm>
#include <functional>

namespace
{
/// A URL for each line but comments, invalid where the line is not a URL; nothing where the pasteboard has no
/// content.
std::optional<QList<QUrl>> readLines(const QMimeData *pasteboard, const QString &type)
{
    QByteArray content = pasteboard ? pasteboard->data(type) : QByteArray();
    content.replace('\0', ""); // some programs end the list with a NUL
    if (content.isEmpty())
        return std::nullopt;
    QList<QUrl> urls;
    const auto lines = content.split('\n');
    for (const QByteArray &line : lines) {
        const QByteArray text = line.trimmed();
        if (text.isEmpty() || text.startsWith('#'))
            continue;
        const QUrl url = QUrl::fromEncoded(text, QUrl::TolerantMode);
        urls += url.isValid() && !url.scheme().isEmpty() ? url : QUrl();
    }
    return urls;
}
} // namespace

std::optional<QList<QUrl>> readURLs(const QMimeData *pasteboard, const QString &type)
{
    auto urls = readLines(pasteboard, type);
    if (urls && urls->contains(QUrl()))
        return std::nullopt;
    return urls;
}

bool offersFile(const QMimeData *pasteboard, const QString &type)
{
    const auto urls = readLines(pasteboard, type).value_or(QList<QUrl>());
    return std::any_of(urls.begin(), urls.end(), std::mem_fn(&QUrl::isLocalFile));
}
