#include "Program.h"
#include "ServiceInstallation.h"

int main(int argc, char **argv)
{
    return runProgram(argc, argv,
                      {.installServices = installServices,
                       .applicationIdentifier = QStringLiteral("com.quorvane.Plovendix"),
                       .obtainSharedUpdater = installMakerServices});
}
