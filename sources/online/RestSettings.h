#pragma once
#include "RestAccess.h"

#include <media/names/Ranking.h>

/// What a person has set for the subtitle service. A plain value.
struct RestSettings : RestAccess
{
    RankingPreferences preferences;
    bool keepsOriginalBytes = false;
};
