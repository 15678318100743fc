#pragma once
#include <QByteArray>
#include <QString>

class QUrl;

/// File names as their bytes on disk, which need not be UTF-8.
namespace FileName
{
/// The part after the last "/", ignoring trailing ones; empty for a path of slashes.
QByteArray lastPathComponent(const QByteArray &path);
/// The same for the path of a URL of any scheme, without host and query.
QByteArray lastPathComponent(const QUrl &url);
/// The name without its last extension. A dot at the start or at the end does not count: ".profile" and
/// "Film." stay unchanged.
QByteArray deletingPathExtension(const QByteArray &name);
/// "name.extension". The name stays unchanged when the extension is empty or contains "/" or NUL.
QByteArray appendingPathExtension(const QByteArray &name, const QString &extension);
/// Whether the name is one path component, and neither the folder itself nor its parent.
bool isPlain(const QByteArray &name);
} // namespace FileName
