#include "Drive.h"
#include "Program.h"
#include "ServiceInstallation.h"

#include <cstdio>
#include <memory>

/// plovendix-drive VIDEO PICTURE: runs the program without a person.
int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "Usage: plovendix-drive VIDEO PICTURE\n");
        return 2;
    }
    const QString picture = QString::fromLocal8Bit(argv[2]);
    std::unique_ptr<Drive> drive;
    const auto begin = [&](MainWindowController &mainWindow) {
        drive = std::make_unique<Drive>(mainWindow, picture);
    };
    return runProgram(2, argv, {.installServices = installServices, .windowShown = begin});
}
