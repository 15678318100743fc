#pragma once
#include <QByteArray>
#include <QString>

/// Paths as the file system's bytes, absolute and without a trailing slash. Any thread.

QByteArray withoutTrailingSlashes(QByteArray path);
QByteArray lastComponent(const QByteArray &path);
QByteArray parentFolder(const QByteArray &path);
/// The same for display. Bytes that are not UTF-8 become replacement characters.
QString textOfName(const QByteArray &name);
