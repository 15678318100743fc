#include "PasteboardURLs.h"

#include <QMimeData>
#include <QSysInfo>

namespace
{
bool isThisMachine(const QString &host)
{
    return host == QLatin1String("localhost") ||
           host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
}

/// Some programs name the machine in a file's URL; the path is ours all the same.
QUrl withoutOwnHost(QUrl url)
{
    if (url.isLocalFile() && isThisMachine(url.host()))
        url.setHost(QString());
    return url;
}
} // namespace

std::optional<QList<QUrl>> readURLs(const QMimeData *pasteboard, const QString &type)
{
    QByteArray content = pasteboard ? pasteboard->data(type) : QByteArray();
    content.replace('\0', ""); // some programs end the list with one
    if (content.isEmpty())
        return std::nullopt;
    QList<QUrl> urls;
    const auto lines = content.split('\n');
    for (const QByteArray &line : lines) {
        const QByteArray text = line.trimmed();
        if (text.isEmpty() || text.startsWith('#'))
            continue;
        const QUrl url = QUrl::fromEncoded(text, QUrl::TolerantMode);
        if (!url.isValid() || url.scheme().isEmpty())
            return std::nullopt;
        urls.append(withoutOwnHost(url));
    }
    return urls;
}
