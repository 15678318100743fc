#pragma once
#include <QString>
#include <QStringList>

/// The name of the locale for messages as the environment gives it, unchanged: LC_ALL, else LC_MESSAGES, else
/// LANG. An empty variable counts as unset; "C" when none is set. Read anew at every call, any thread.
QString environmentLocaleName();

/// The preferred languages, the most preferred first ("de_AT", "de", …): LANGUAGE unless the locale is plain
/// C, then the locale itself. Empty for C and POSIX.
QStringList environmentLanguages();

/// Whether a locale name, with or without a character set ("C.UTF-8"), names no language.
bool isLocaleWithoutLanguage(const QString &name);
