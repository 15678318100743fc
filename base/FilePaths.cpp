#include "FilePaths.h"

QByteArray withoutTrailingSlashes(QByteArray path)
{
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    return path;
}

QByteArray lastComponent(const QByteArray &path)
{
    const QByteArray plain = withoutTrailingSlashes(path);
    return plain.mid(plain.lastIndexOf('/') + 1);
}

QByteArray parentFolder(const QByteArray &path)
{
    const QByteArray plain = withoutTrailingSlashes(path);
    const qsizetype slash = plain.lastIndexOf('/');
    return slash <= 0 ? QByteArray("/") : withoutTrailingSlashes(plain.left(slash));
}

QString textOfName(const QByteArray &name)
{
    return QString::fromUtf8(name);
}
