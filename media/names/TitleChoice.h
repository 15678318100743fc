#pragma once
#include "NameRules.h"

/// Of a title in two scripts ("海贼王 One Piece", "当我[12集].When.I") keeps the Latin one, which is the one
/// that releases are known by. To be called when the facts have ended the title.
void chooseLatinTitle(const NameTokens &name, NameFacts &facts);

/// Whether a word has Chinese characters or Japanese ones.
bool isEastAsian(const QString &word);
