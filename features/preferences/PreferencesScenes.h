#pragma once

/// Registers the preferences panes of this room with the storyboard "Preferences".
void registerPreferencesScenes();
