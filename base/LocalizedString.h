#pragma once
#include <QString>
#include <QStringList>

/// Texts as people read them. Any thread.
namespace String
{
/// The text for `key` in the person's language, the key itself when there is none. The one way to localise;
/// `comment` is for translators.
QString localize(const QString &key, const QString &comment = {});
/// The same for the texts of scenes.
QString localize(const char *key, const char *comment);

/// `format` with a text in each place: "%1$@" takes the first, "%2$@" the second, and each "%@" or "%d" the
/// next one. A place without a text becomes empty. The texts are taken as they are: a file name may contain
/// such a mark itself.
QString fill(const QString &format, const QStringList &texts);
} // namespace String
