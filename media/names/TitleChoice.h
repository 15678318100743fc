#pragma once
#include "NameRules.h"

/// Chooses the Latin one of a title in two scripts ("海贼王 One Piece", "当我[12集].When.I"), by which
/// releases are known. Call after the facts have ended the title.
void chooseLatinTitle(const NameTokens &name, NameFacts &facts);

/// Whether a word has Chinese characters or Japanese ones.
bool isEastAsian(const QString &word);
