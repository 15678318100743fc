#pragma once
#include "Language.h"
#include "LocaleSource.h"
#include <QList>

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
