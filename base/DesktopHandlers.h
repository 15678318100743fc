#pragma once
#include <QByteArray>
#include <QString>
#include <optional>

/// What the desktop knows about installed applications, by their desktop entries. Any thread.
/// A handler for a new kind of URL is known once `update-desktop-database` has run for its folder.

/// Starts the application that opens `uri`; false when there is none or it could not be started. It gets our
/// environment without the variables that hold secrets (PLOVENDIX_…).
bool openWithDefaultHandler(const QByteArray &uri);
/// Whether the desktop's virtual file system opens such URLs ("file", and with its helpers "smb", "trash",
/// …).
bool isFileSystemScheme(const QString &scheme);
/// Opens a folder in the application for folders.
bool openFolder(const QByteArray &folderUri);
/// The path of the entry "IDENTIFIER.desktop", where it is installed and its program is there.
std::optional<QString> desktopEntryPath(const QString &identifier);
