#pragma once

/// Registers this room's scenes with the storyboard "Main": "MainViewController" and the cell
/// "SubtitleCellID".
void registerSearchScenes();
