#pragma once
#include <QString>
#include <functional>

/// Stops the program over a condition that a correct bundle excludes (a missing outlet, a controller of the
/// wrong class). Writes "Fatal fault: " and the message to standard error, then aborts. Any thread.
[[noreturn]] void fatalFault(const QString &message);

/// What happens instead of the abort, for tests: the handler must not return (it throws). Empty restores the
/// abort.
void setFatalFaultHandler(std::function<void(const QString &)> handler);
