#pragma once
#include "NameRules.h"

/// Stores the year and ends the title before it: a year alone in brackets, else the last one before the words
/// about the file. A year that opens the title is part of it. Dates end the title, too.
void findYear(const NameTokens &name, NameFacts &facts);

/// Ends the title at the words about the file, or at the brackets around other facts.
void findTitleEnd(const NameTokens &name, NameFacts &facts);
