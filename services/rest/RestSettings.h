#pragma once
#include "RestAccess.h"

#include <services/ranking/Ranking.h>

/// What a person has set for the subtitle service. A plain value.
struct RestSettings : RestAccess
{
    RankingPreferences preferences;
    bool keepsOriginalBytes = false;
};
