#include "FileName.h"

namespace
{
/// A service's language or format without characters that would make the name a path.
QString namePart(const QString &text)
{
    QString part = text.toLower();
    part.removeIf([](QChar character) { return character == u'/' || character == QChar::Null; });
    return part;
}
} // namespace

QByteArray FileName::lastPathComponent(const QUrl &url)
{
    QByteArray path = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    while (path.endsWith('/'))
        path.chop(1);
    return path.sliced(path.lastIndexOf('/') + 1);
}

QByteArray FileName::deletingPathExtension(const QByteArray &name)
{
    const qsizetype dot = name.lastIndexOf('.');
    return dot <= 0 || dot == name.size() - 1 ? name : name.first(dot);
}

std::optional<QString> suggestedFileName(const std::optional<QUrl> &video, const Subtitle &subtitle)
{
    if (!video)
        return std::nullopt;
    const QByteArray name = FileName::deletingPathExtension(FileName::lastPathComponent(*video));
    return QString::fromUtf8(name) + u'.' + namePart(subtitle.subLanguageID) + u'.' +
           namePart(subtitle.subFormat);
}
