#pragma once
#include <base/Locale.h>
#include <QHash>
#include <QString>
#include <optional>

class Bundle;

/// The codes of languages: two-letter codes (ISO 639-1 and the services' own "pb") and the three-letter codes
/// of the subtitle service family, by a bundle's "iso639_1_to_iso639_2.plist". A missing or malformed table
/// is empty. Immutable; any thread.
class LanguageCodes final
{
public:
    explicit LanguageCodes(const Bundle &bundle);
    /// The codes of the main bundle as it is at the first call.
    static const LanguageCodes &shared();

    /// The three-letter code for a two-letter code, looked up as it is; "eng" when the table has none.
    QString iso639_2LanguageCode(const QString &iso639_1LanguageCode) const;
    /// The same for a locale's own language; nothing when it has none or the table lacks it.
    std::optional<QString> iso639_2LanguageCode(const Locale &locale) const;

    /// The three-letter code for any spelling of a language: "GER", "deu", "de" and "de_AT" all give "ger",
    /// "pb" and "pt-BR" give "pob". Empty when the text is not a language code; unknown three-letter codes
    /// are returned in lower case.
    QString code(const QString &spelling) const;
    /// The two-letter code for a three-letter code; empty when there is none.
    QString twoLetterCode(const QString &code) const { return m_twoLetters.value(code); }
    /// The language's name in `locale`'s language, "Portuguese (Brazil)" for "pob" and for "pb"; the code
    /// itself when it has no name. Takes two-letter codes, too.
    QString name(const QString &code, const Locale &locale) const;

private:
    QHash<QString, QString> m_table;
    QHash<QString, QString> m_spellings;  // two letters, or another spelling, to three letters
    QHash<QString, QString> m_twoLetters; // three letters to two
};
