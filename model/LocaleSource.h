#pragma once
#include <QString>
#include <QStringList>
#include <compare>
#include <memory>
#include <optional>

/// One locale as the catalogue asks it: names in its language, and its collation.
class LocaleNames
{
public:
    virtual ~LocaleNames() = default;

    virtual std::optional<QString> nameOfLanguage(const QString &code) const = 0;
    virtual std::optional<QString> nameOfRegion(const QString &code) const = 0;
    /// Sensitive to case and diacritics.
    virtual std::weak_ordering compare(const QString &a, const QString &b) const = 0;
};

/// Where the person's locale and the lists of codes come from: ICU in the program, made-up data in tests.
class LocaleSource
{
public:
    virtual ~LocaleSource() = default;

    /// The person's locale as it is now; never null.
    virtual std::unique_ptr<const LocaleNames> currentLocale() const = 0;
    virtual QStringList isoLanguageCodes() const = 0;
    virtual QStringList isoRegionCodes() const = 0;

    /// ICU's data and the environment's locale. Any thread.
    static const LocaleSource &system();
};
