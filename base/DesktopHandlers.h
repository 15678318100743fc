#pragma once
#include <QByteArray>
#include <QString>
#include <optional>

/// What the desktop knows about installed applications, by their desktop entries. Any thread.
/// A handler for a new kind of URL is known once `update-desktop-database` has run for its folder.

/// Starts the application that opens `uri`; returns false when there is none or it cannot be started. The
/// application gets our environment without the variables that hold secrets (PLOVENDIX_…).
bool openWithDefaultHandler(const QByteArray &uri);
/// Whether the desktop's virtual file system opens URLs of this scheme ("file", and with its helpers "smb",
/// "trash", …).
bool isFileSystemScheme(const QString &scheme);
/// Opens a folder in the default file manager.
bool openFolder(const QByteArray &folderUri);
/// The path of the entry "IDENTIFIER.desktop" when it is installed and its program exists.
std::optional<QString> desktopEntryPath(const QString &identifier);
