#pragma once
#include <QPoint>

class QMenu;
class Window;

/// The menu of a window where the window system shows none of its own. Opens at a global position, returns at
/// once and goes when it is closed.
QMenu *popUpWindowMenu(Window &window, const QPoint &globalPosition);
