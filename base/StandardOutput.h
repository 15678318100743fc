#pragma once
#include <QString>
#include <functional>

/// Prints one of the program's documented lines on standard output and flushes it. The line is cleaned of
/// line breaks and control characters. Any thread; lines of different threads do not mix. Never waits for the
/// reader: when standard output is full, up to 4 MiB of lines are queued and later ones dropped; when it is
/// broken, lines are dropped.
void printLine(const QString &line);

/// From now on, writing to a pipe or socket without a reader returns an error instead of ending the process.
void ignoreBrokenPipes();

/// Also hands every line to `observer`, on the thread that printed it. For tests; empty removes it.
void setPrintedLineObserver(std::function<void(const QString &)> observer);
