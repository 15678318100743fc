#pragma once
#include <QString>
#include <functional>

/// The lines the program promises on standard output, each flushed as it is written, as a terminal may show
/// them: on one line, without control characters. Any thread; lines of different threads never mix, and no
/// caller waits for a reader: where standard output is full, lines follow as it is read (4 MiB of them, the
/// rest is left out), and where it is broken they are dropped.
void printLine(const QString &line);

/// From now on writing to a pipe or socket without a reader is an error and no longer ends the process.
void ignoreBrokenPipes();

/// Also hands every line to `observer`, on the thread that printed it. For tests; empty removes it.
void setPrintedLineObserver(std::function<void(const QString &)> observer);
