#pragma once
#include <base/Error.h>

class QWidget;

/// The standard error alert: the error's description in a window modal to the program, plain text, one
/// button. Runs an event loop of its own and returns when the person has dismissed it; `window` (may be null,
/// may go meanwhile) is what it stands over. The only nested event loop of the program. Main thread.
void showErrorAlert(const Error &error, QWidget *window);
