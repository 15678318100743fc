#pragma once
#include <QByteArray>
#include <QString>

class QUrl;

/// File names as the bytes they have on disk, which need not be UTF-8.
namespace FileName
{
/// What follows the last "/", trailing ones aside; empty for a path of nothing else.
QByteArray lastPathComponent(const QByteArray &path);
/// The same for what a URL of any scheme names: neither its host nor its query counts.
QByteArray lastPathComponent(const QUrl &url);
/// Without the last extension. A dot at the start or at the end begins none: ".profile" and "Film." stay as
/// they are.
QByteArray deletingPathExtension(const QByteArray &name);
/// "name.extension". The name stays as it is when the extension is empty or no part of a file name ("/",
/// NUL).
QByteArray appendingPathExtension(const QByteArray &name, const QString &extension);
/// Whether it names a file in a folder, whatever the folder: one path component, not the folder itself or its
/// parent.
bool isPlain(const QByteArray &name);
} // namespace FileName
