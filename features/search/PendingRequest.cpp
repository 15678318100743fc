#include "PendingRequest.h"

namespace
{
PendingRequest *sharedHolder = nullptr;
}

PendingRequest *PendingRequest::shared()
{
    return sharedHolder;
}

void PendingRequest::setShared(PendingRequest *holder)
{
    sharedHolder = holder;
}
