#pragma once
#include "NameRules.h"

/// Takes off a title what only says how much of it there is or which cut: "The Complete Series", "Final Cut",
/// "AKA …", "Part 2". To be called when the facts have ended the title.
void cutTitleTail(const NameTokens &name, NameFacts &facts);
