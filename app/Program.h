#pragma once
#include <functional>

class MainWindowController;

/// What differs between the program and the executables that drive it.
struct ProgramParts
{
    /// Makes the services and installs them as the shared ones. Called once, before the window is made.
    std::function<void()> installServices;
    /// Called once the main window is on screen.
    std::function<void(MainWindowController &)> windowShown = {};
};

/// The whole run of the program, from its arguments to its exit code: 0, or 2 for arguments it does not
/// understand.
int runProgram(int argc, char **argv, const ProgramParts &parts);
