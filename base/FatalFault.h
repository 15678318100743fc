#pragma once
#include <QString>
#include <functional>

/// Stops the program on a condition that a correct bundle excludes, such as a missing outlet or a controller
/// of the wrong class. Writes "Fatal fault: " and the message to standard error, then aborts. Any thread.
[[noreturn]] void fatalFault(const QString &message);

/// Replaces the abort in tests. The handler must throw instead of returning; an empty handler restores the
/// abort.
void setFatalFaultHandler(std::function<void(const QString &)> handler);
