#pragma once
#include <model/LocaleUtilities.h>
#include <QMap>

/// A locale source whose names and codes a test sets, collating as American English does. It counts how often
/// the current locale is asked for and keeps the region codes that names were asked of.
class MadeUpLocale final : public LocaleSource
{
public:
    QMap<QString, QString> languages;
    QMap<QString, QString> regions;
    QStringList languageCodes;
    QStringList regionCodes;
    mutable int localesTaken = 0;
    mutable QStringList regionsAsked;

    std::shared_ptr<const Locale> currentLocale() const override
    {
        ++localesTaken;
        return std::make_shared<Names>(*this);
    }
    QStringList isoLanguageCodes() const override { return languageCodes; }
    QStringList isoRegionCodes() const override { return regionCodes; }

private:
    class Names final : public Locale
    {
    public:
        explicit Names(const MadeUpLocale &source) : Locale(QStringLiteral("en_US")), m_source(source) {}

        std::optional<QString> localizedStringForLanguageCode(const QString &code) const override
        {
            return valueOf(m_source.languages, code);
        }
        std::optional<QString> localizedStringForRegionCode(const QString &code) const override
        {
            m_source.regionsAsked += code;
            return valueOf(m_source.regions, code);
        }

    private:
        static std::optional<QString> valueOf(const QMap<QString, QString> &names, const QString &code)
        {
            return names.contains(code) ? std::optional(names.value(code)) : std::nullopt;
        }

        const MadeUpLocale &m_source;
    };
};
