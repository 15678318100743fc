#pragma once
#include <QString>
#include <optional>

/// Renames a file that cannot be read for what it should be to "PATH.damaged-N", so that nothing is written
/// over it, and logs the new name. Gives that name, or nothing where the file cannot be renamed. Any thread.
std::optional<QString> setDamagedFileAside(const QString &path);
