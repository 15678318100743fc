#pragma once
#include "NameRules.h"

/// Removes from the end of a title the words for its completeness or cut: "The Complete Series", "Final Cut",
/// "AKA …", "Part 2". Call after the facts have ended the title.
void cutTitleTail(const NameTokens &name, NameFacts &facts);
