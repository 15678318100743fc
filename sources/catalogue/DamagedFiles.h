#pragma once
#include <QString>

/// Remembers for the whole process which files were found damaged, so that each is looked through once: the
/// look takes as long as the file is large, and would find the same again.
namespace DamagedFiles
{
/// Whether the file, as it is now, has not been seen before. One that was replaced or has changed counts as
/// another. Any thread.
bool isFirstSight(const QString &path);
} // namespace DamagedFiles
