#pragma once

/// Makes the panels known to their storyboards: the Updates pane to "Preferences", About and the donation
/// prompt to "Main".
void registerPanelScenes();
