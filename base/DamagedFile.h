#pragma once
#include <QString>
#include <optional>

/// Renames an unreadable file to "PATH.damaged-N", so that it is not overwritten, and logs the new name.
/// Returns the new name, or none when the rename fails. Any thread.
std::optional<QString> setDamagedFileAside(const QString &path);
