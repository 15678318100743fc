#pragma once
#include <QString>

class QWidget;

/// The right to come to the front that the program whom the person used last has passed on: an activation
/// token of Wayland or a startup id of X11. It is good for one window. Main thread only.
void setActivationToken(const QString &token);
/// The token, which is used up with this; empty when there is none.
QString takeActivationToken();
/// The token that this process was started with; to be asked before the application object exists, which uses
/// it up.
QString activationTokenOfStart();
/// Asks the window system to make the window the active one, with the token if there is one, and ends the
/// sign of a start under way that the token stands for.
void activateWithToken(QWidget &window);
