#pragma once
#include <QString>
#include <functional>

class QWidget;

/// Asks for a folder in a dialogue of `window`, on the folder chosen the last time, else on the one with the
/// person's videos. `chosen` is called with what is accepted, never for a dialogue that is cancelled or goes
/// with its window. Returns at once.
void askForFolder(QWidget &window, const std::function<void(QString)> &chosen);
