#pragma once

/// Makes the panels known to their storyboards: the Services and Updates panes to "Preferences", About,
/// the donation prompt and the update and feedback windows to "Main".
void registerPanelScenes();
