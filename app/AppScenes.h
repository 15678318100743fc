#pragma once

/// Makes every scene of the program known to its storyboard.
void registerScenes();
