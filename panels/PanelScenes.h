#pragma once

/// Makes the panels known to their storyboards: the Services and Updates panes to "Preferences", About and
/// the donation prompt to "Main".
void registerPanelScenes();
