#pragma once

/// Registers every scene of the program with its storyboard.
void registerScenes();
