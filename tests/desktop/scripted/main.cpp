#include "KeywordServices.h"

#include <app/Program.h>

/// plovendix-scripted [VIDEO]: the program with a service that does what a search's words say. Its folder is
/// PLOVENDIX_SCRIPT_FOLDER.
int main(int argc, char **argv)
{
    return runProgram(argc, argv,
                      {.installServices =
                           [] {
                               const QString folder = qEnvironmentVariable("PLOVENDIX_SCRIPT_FOLDER");
                               SubtitleService::setShared(std::make_shared<KeywordSubtitleService>(folder));
                               MetadataService::setShared(std::make_shared<EmptyMetadataService>());
                               return nullptr;
                           },
                       .applicationIdentifier = QStringLiteral("com.quorvane.Plovendix")});
}
