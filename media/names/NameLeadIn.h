#pragma once
#include "NameRules.h"

/// Finds the beginning of the title after the group's brackets, the site's name or a running number. Stores
/// the title's first word and, for a name that consists of brackets, also its end.
void skipLeadIn(const NameTokens &name, NameFacts &facts);
