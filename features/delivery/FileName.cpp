#include "FileName.h"

#include <QUrl>

QByteArray FileName::lastPathComponent(const QByteArray &path)
{
    qsizetype end = path.size();
    while (end > 0 && path.at(end - 1) == '/')
        --end;
    if (end == 0)
        return {};
    const qsizetype slash = path.lastIndexOf('/', end - 1);
    return path.sliced(slash + 1, end - slash - 1);
}

QByteArray FileName::lastPathComponent(const QUrl &url)
{
    return lastPathComponent(QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()));
}

QByteArray FileName::deletingPathExtension(const QByteArray &name)
{
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0 || dot == name.size() - 1)
        return name;
    return name.first(dot);
}

QByteArray FileName::appendingPathExtension(const QByteArray &name, const QString &extension)
{
    if (extension.isEmpty() || extension.contains(u'/') || extension.contains(QChar::Null))
        return name;
    return name + '.' + extension.toUtf8();
}

bool FileName::isPlain(const QByteArray &name)
{
    return !name.isEmpty() && name != "." && name != ".." && !name.contains('/') && !name.contains('\0');
}
