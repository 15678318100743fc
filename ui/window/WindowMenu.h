#pragma once
#include <QPoint>

class QMenu;
namespace ui
{
class Window;
}

/// The menu of a window when the window system has none. Opens at a global position, returns at once and
/// deletes itself when closed.
QMenu *popUpWindowMenu(ui::Window &window, const QPoint &globalPosition);
