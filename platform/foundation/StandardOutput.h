#pragma once
#include <QString>
#include <functional>

/// The lines the program promises on standard output, each flushed as it is written. Any thread; lines of
/// different threads never mix. Line breaks inside the text become spaces, so that one call is one line.
void printLine(const QString &line);

/// Also hands every line to `observer`, on the thread that printed it. For tests; empty removes it.
void setPrintedLineObserver(std::function<void(const QString &)> observer);
