#pragma once

/// Makes the preferences panes of this room known to the storyboard "Preferences".
void registerPreferencesScenes();
