#pragma once
#include <base/Result.h>

class QWidget;

/// The standard error alert: an application-modal window with the error's description as plain text and one
/// button. Runs a nested event loop and returns when the alert is dismissed; `window` is its parent, may be
/// null and may be destroyed meanwhile. Main thread.
void showErrorAlert(const base::Error &error, QWidget *window);
