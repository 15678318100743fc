#pragma once
#include "NameRules.h"

/// Finds where the title begins, behind what stands before it: the group's brackets, the site it came from, a
/// running number. Enters the title's first word, and where the name consists of brackets, also its end.
void skipLeadIn(const NameTokens &name, NameFacts &facts);
