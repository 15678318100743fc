#pragma once

/// Registers the accessible object of every ui::Window: a window of its title, without the widgets that only
/// draw or resize its frame. Later calls do nothing.
void installWindowAccessible();
