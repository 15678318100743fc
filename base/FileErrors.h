#pragma once
#include "Result.h"
#include <QByteArray>

/// Localised sentences about files for errno values, in the domain "FileManager". Paths are whole and in the
/// file system's bytes. Any thread.

inline const QString FileErrorDomain = QStringLiteral("FileManager");

base::Error moveError(int code, const QByteArray &source, const QByteArray &destination);
/// The error of a move whose source does not exist.
base::Error missingSourceError(const QByteArray &source, const QByteArray &destination);
base::Error createFolderError(int code, const QByteArray &folder);
/// The error for a file that could not be written. It holds the reason alone; the caller names the purpose.
base::Error writeError(int code, const QByteArray &file);
/// The error for a URL that names no local file.
base::Error notAFileError(const QString &url);
