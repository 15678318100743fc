#pragma once
#include <base/Locale.h>
#include <QString>

/// The three-letter codes of the subtitle service family, by the bundle's table of codes (see
/// LanguageCodeConversion.h) as it is at the first call. Any thread.
namespace ServiceLanguages
{
/// The family's three-letter code for any spelling of a language: "GER", "deu", "de" and "de_AT" all give
/// "ger", "pb" and "pt-BR" give "pob". Empty when the text is not a language code; unknown three-letter codes
/// are returned in lower case.
QString code(const QString &spelling);

/// The two-letter code of ISO 639-1 (or the family's own, "pb") for a three-letter code; empty when there is
/// none.
QString twoLetterCode(const QString &code);

/// The language's name in `locale`'s language, "Portuguese (Brazil)" for "pob" and for "pb"; the code itself
/// when it has no name. Takes two-letter codes, too.
QString name(const QString &code, const Locale &locale);
} // namespace ServiceLanguages
