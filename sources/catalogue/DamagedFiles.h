#pragma once
#include <QString>

/// Remembers for the whole process which files were found damaged, so that each is checked once: the check
/// reads the whole file and would find the same again.
namespace DamagedFiles
{
/// Whether the file is new to this list. A replaced or changed file counts as another one. Any thread.
bool isFirstSight(const QString &path);
} // namespace DamagedFiles
