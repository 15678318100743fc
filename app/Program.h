#pragma once
#include <QString>
#include <functional>
#include <memory>

class MainWindowController;

/// The parts in which the program and its test executables differ.
struct ProgramParts
{
    /// Makes the services and installs them as the shared ones. Called once, before the window is made. The
    /// result is released after the window and before the application object.
    std::function<std::shared_ptr<void>()> installServices;
    /// Called once the main window is shown.
    std::function<void(MainWindowController &)> windowShown = {};
    /// The name on the session bus under which one instance of the program runs; empty for no such name.
    QString applicationIdentifier = {};
    /// Makes the shared updater, once launch has finished.
    std::function<void()> obtainSharedUpdater = {};
};

/// Runs the program from its arguments to its exit code: 0, or 2 for invalid arguments.
int runProgram(int argc, char **argv, const ProgramParts &parts);
