#pragma once
#include "AppDelegate.h"

#include <QString>
#include <functional>
#include <memory>

class MainWindowController;

/// What differs between the program and the executables that drive it.
struct ProgramParts
{
    /// Makes the services and installs them as the shared ones. Called once, before the window is made. What
    /// it gives is let go when the window is gone and before the application object goes.
    std::function<std::shared_ptr<void>()> installServices;
    /// Called once the main window is on screen.
    std::function<void(MainWindowController &)> windowShown = {};
    /// The name on the session bus under which one instance of the program runs; empty for one that shares
    /// nothing with others.
    QString applicationIdentifier = {};
    /// What the application delegate gets.
    ApplicationServices applicationServices = {};
};

/// The whole run of the program, from its arguments to its exit code: 0, or 2 for arguments it does not
/// understand.
int runProgram(int argc, char **argv, const ProgramParts &parts);
