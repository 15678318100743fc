#pragma once
#include "Error.h"
#include <QByteArray>

/// Localised sentences about files for errno values. Domain "FileManager". Any thread.

/// The error of a move that failed with `code`; `source` and `destination` are whole paths.
base::Error moveError(int code, const QByteArray &source, const QByteArray &destination);
/// The error of a move whose source, or whose destination's folder, does not exist.
base::Error missingSourceError(const QByteArray &source, const QByteArray &destination);
base::Error missingFolderError(const QByteArray &source, const QByteArray &destination);
/// The error for a folder that would have to be copied to another file system.
base::Error folderBetweenDisksError(const QByteArray &source, const QByteArray &destination);
base::Error createFolderError(int code, const QByteArray &folder);
/// The error for a file that could not be written. It holds the reason alone; the caller names the purpose.
base::Error writeError(int code, const QByteArray &file);
bool isFileError(const base::Error &error, int code);
/// The error for a URL that names no local file.
base::Error notAFileError(const QString &url);
