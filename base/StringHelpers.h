#pragma once
#include "LocalizedString.h"
#include <QSet>
#include <QString>

namespace String
{
/// The text without the Unicode scalars that are in `characters`. A combining mark goes without its base
/// letter.
QString removingCharacters(const QString &text, const QSet<char32_t> &characters);
} // namespace String
