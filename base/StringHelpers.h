#pragma once
#include "LocalizedString.h"
#include <QSet>
#include <QString>

namespace String
{
/// The text without the Unicode scalars in `characters`. A combining mark is removed even if its base letter
/// stays.
QString removingCharacters(const QString &text, const QSet<char32_t> &characters);
} // namespace String
