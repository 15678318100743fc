#pragma once
#include <QString>
#include <functional>

class QWidget;

/// Asks for a folder in a dialogue of `window`, starting at the folder chosen last or the Videos folder.
/// `chosen` is called with an accepted folder, never when the dialogue is cancelled or destroyed. Returns at
/// once.
void askForFolder(QWidget &window, const std::function<void(QString)> &chosen);
