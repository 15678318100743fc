#include "DownloadPrompt.h"

namespace
{
DownloadPrompt *sharedPrompt = nullptr;
}

DownloadPrompt *DownloadPrompt::shared()
{
    return sharedPrompt;
}

void DownloadPrompt::setShared(DownloadPrompt *prompt)
{
    sharedPrompt = prompt;
}
