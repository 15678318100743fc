#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <compare>
#include <optional>

/// A locale of ICU's data: names of languages and regions, and collation. A plain value; any thread. Tests
/// override the names. C and POSIX are locales without a language code; their names are English.
class Locale
{
public:
    /// The person's locale, read anew from the environment: the first language of LANGUAGE that ICU has names
    /// for, else LC_ALL, LC_MESSAGES or LANG. An empty variable counts as unset; C ignores LANGUAGE.
    static Locale current();
    explicit Locale(const QString &identifier);
    virtual ~Locale() = default;
    Locale(const Locale &) = default;
    Locale &operator=(const Locale &) = default;

    /// The languages that the environment asks for, the most preferred first ("de_AT", "de", …): LANGUAGE
    /// unless the locale is plain C, then the locale itself. Empty for C and POSIX.
    static QStringList preferredLanguages();

    QString identifier() const { return m_identifier; }
    /// "de" of "de_AT.UTF-8"; nothing for C, POSIX and the empty identifier.
    std::optional<QString> languageCode() const;
    /// The name in this locale's language, or none when the data has no name. A locale without display data
    /// uses English names.
    virtual std::optional<QString> localizedStringForLanguageCode(const QString &code) const;
    virtual std::optional<QString> localizedStringForRegionCode(const QString &code) const;
    /// Three-way comparison by this locale's collation rules, sensitive to case and diacritics.
    std::weak_ordering compare(const QString &a, const QString &b) const;

    /// Every language or region code that ICU knows, in ICU's order.
    static QStringList isoLanguageCodes();
    static QStringList isoRegionCodes();

private:
    bool hasOwnDisplayData() const;

    QString m_identifier;
    QByteArray m_icuIdentifier;     // for collation; English's without a language
    QByteArray m_displayIdentifier; // for names; English's when ICU has none
};
