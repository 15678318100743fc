#pragma once
#include <QSet>
#include <QString>

/// Texts as people read them.
namespace String
{
/// The text for `key` in the person's language, the key itself when there is none. The one way to localise;
/// `comment` is for translators.
QString localize(const QString &key, const QString &comment = {});
/// The same for the texts of scenes.
QString localize(const char *key, const char *comment);

/// The text without the Unicode scalars that are in `characters`. A combining mark goes without its base
/// letter.
QString removingCharacters(const QString &text, const QSet<char32_t> &characters);
} // namespace String
