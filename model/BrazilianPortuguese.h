#pragma once
#include <QString>

class LocaleNames;

/// The subtitle services' code for Brazilian Portuguese, which no locale data lists.
inline const QString BrazilianPortugueseCode = QStringLiteral("pb");

/// "Portuguese (Brazil)" in the locale's language. A locale without a name for either part is a fatal fault,
/// because every locale's data has both.
QString brazilianPortugueseName(const LocaleNames &locale);
