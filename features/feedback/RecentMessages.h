#pragma once
#include <QStringList>

/// The last messages of the program's own categories, for a report. Of each only what is safe to show is
/// kept: no keys and passwords, no paths and addresses, nothing in quotation marks (names of films and
/// files). Any thread.
namespace RecentMessages
{
inline constexpr qsizetype MaxLines = 100;
inline constexpr qsizetype MaxLineLength = 300;

/// From now on messages are noted, and go where they went before too. The second call does nothing.
void install();
/// Ends that and forgets them, for tests.
void uninstall();

/// The oldest first.
QStringList lines();

/// What is left of a message.
QString cleaned(const QString &message);
} // namespace RecentMessages
