#pragma once

/// Makes this room's scenes known to the storyboard "Main": "MainViewController" and the cell
/// "SubtitleCellID".
void registerSearchScenes();
