#pragma once
#include <QString>

class QWidget;

/// Stores an activation token (Wayland) or startup id (X11), by which another program passes on the right to
/// come to the front. It is good for one window. Main thread only.
void setActivationToken(const QString &token);
/// Returns the token and clears it; empty when there is none.
QString takeActivationToken();
/// The token that this process was started with. Call before the application object is created, which
/// consumes it.
QString activationTokenOfStart();
/// Activates the window, with the token if there is one, and ends the startup notification of that token.
void activateWithToken(QWidget &window);
