#pragma once
#include <base/Locale.h>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <memory>

/// The subtitle services' code for Brazilian Portuguese, which no locale data lists.
inline const QString BrazilianPortugueseCode = QStringLiteral("pb");

/// "Portuguese (Brazil)" in the locale's language. A locale without a name for either part is a fatal fault,
/// because every locale's data has both.
QString brazilianPortugueseName(const Locale &locale);

/// Where the person's locale and the lists of codes come from: ICU's data and the environment, or made-up
/// data in tests. Any thread.
class LocaleSource
{
public:
    virtual ~LocaleSource() = default;

    /// The person's locale as it is now; never null.
    virtual std::shared_ptr<const Locale> currentLocale() const;
    virtual QStringList isoLanguageCodes() const { return Locale::isoLanguageCodes(); }
    virtual QStringList isoRegionCodes() const { return Locale::isoRegionCodes(); }

    static const LocaleSource &system();
};

/// One entry of the language catalogue. Its two fields are readable by bindings and never change.
class Language final
{
    Q_GADGET
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QString iso639_1 READ iso639_1 CONSTANT)

public:
    Language() = delete;
    Language(const QString &name, const QString &iso639_1) : m_name(name), m_iso639_1(iso639_1) {}

    /// As the person's locale calls it; "-" for the separator entry.
    QString name() const { return m_name; }
    /// The two-letter code, "pb" for Brazilian Portuguese, "-" for the separator entry, and three letters
    /// where ISO 639-1 has no code.
    QString iso639_1() const { return m_iso639_1; }

    /// The code alone decides.
    bool operator==(const Language &other) const { return m_iso639_1 == other.m_iso639_1; }

private:
    QString m_name;
    QString m_iso639_1;
};

/// The subtitle languages a person can choose from, named in their own language. Nothing is cached: every
/// call asks the locale anew. Any thread.
class LocaleUtilities final
{
public:
    using Language = ::Language;

    /// The catalogue of the person's locale, for the life of the process.
    static const LocaleUtilities &shared();

    /// Asks `source`, which must outlive the catalogue.
    explicit LocaleUtilities(const LocaleSource &source) : m_source(source) {}
    LocaleUtilities(const LocaleUtilities &) = delete;
    LocaleUtilities &operator=(const LocaleUtilities &) = delete;

    /// The whole catalogue in display order: common languages, the separator entry, all others. Prints two
    /// counts on standard output, all languages and those below the separator.
    QList<Language> languages() const;
    /// The fixed common languages that have a name, in their fixed order. Prints a line for each that has
    /// none.
    QList<Language> commonLanguages() const;
    /// Every language of the locale data that has a name, sorted by name.
    QList<Language> allLanguages() const;

private:
    const LocaleSource &m_source;
};
