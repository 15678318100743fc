#pragma once
#include <QStringList>

/// The last log messages of the program's own categories, for a report. Keys, passwords, paths, addresses and
/// quoted texts (names of films and files) are removed. Any thread.
namespace RecentMessages
{
inline constexpr qsizetype MaxLines = 100;
inline constexpr qsizetype MaxLineLength = 300;

/// Starts to record messages, which are still logged as before. A second call does nothing.
void install();
/// Stops recording and drops the messages, for tests.
void uninstall();

/// The recorded lines, the oldest first.
QStringList lines();

/// The message with private parts removed.
QString cleaned(const QString &message);
} // namespace RecentMessages
