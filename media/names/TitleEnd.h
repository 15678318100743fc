#pragma once
#include "NameRules.h"

/// Enters the year, and that the title ends before it: a year in brackets of its own, else the last one
/// before the words about the file. A year that opens the title is the title's. Dates end the title too.
void findYear(const NameTokens &name, NameFacts &facts);

/// Ends the title where the words about the file begin, or the brackets around what else has been found.
void findTitleEnd(const NameTokens &name, NameFacts &facts);
