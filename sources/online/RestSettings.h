#pragma once
#include "RestAccess.h"

/// What a person has set for the subtitle service. A plain value.
struct RestSettings : RestAccess
{
    bool asksForMachineTranslated = false;
    bool keepsOriginalBytes = false;
};
