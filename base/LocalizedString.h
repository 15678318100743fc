#pragma once
#include <QSet>
#include <QString>
#include <QStringList>

/// Texts for display, and what they are made of. Any thread.
namespace String
{
/// The text for `key` in the person's language, or the key itself when there is no translation. `comment` is
/// for translators.
QString localize(const QString &key, const QString &comment = {});
/// The same for the texts of scenes.
QString localize(const char *key, const char *comment);

/// Fills the places of `format`: "%1$@" takes the first text, "%2$@" the second, and each "%@" or "%d" the
/// next one. A place without a text becomes empty. Marks inside the texts are not filled.
QString fill(const QString &format, const QStringList &texts);

/// The text without the Unicode scalars in `characters`. A combining mark is removed even if its base letter
/// stays.
QString removingCharacters(const QString &text, const QSet<char32_t> &characters);
} // namespace String
