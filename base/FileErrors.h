#pragma once
#include "Error.h"
#include <QByteArray>

/// The sentences about files that a person reads, in their language, for errno values. Domain "FileManager".
/// Any thread.

/// A move that failed with `code`; `source` and `destination` are whole paths.
Error moveError(int code, const QByteArray &source, const QByteArray &destination);
/// A move whose source, or whose destination's folder, is not there.
Error missingSourceError(const QByteArray &source, const QByteArray &destination);
Error missingFolderError(const QByteArray &source, const QByteArray &destination);
/// A folder refused because it would have to be copied to another file system.
Error folderBetweenDisksError(const QByteArray &source, const QByteArray &destination);
Error createFolderError(int code, const QByteArray &folder);
/// A file that could not be written: the reason alone, for a sentence that says what it was for.
Error writeError(int code, const QByteArray &file);
bool isFileError(const Error &error, int code);
/// A URL that names no file here.
Error notAFileError(const QString &url);
