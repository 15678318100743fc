#include "CodeToName.h"

using namespace Qt::StringLiterals;

QVariant LanguageCodeToName::transformedValue(const QVariant &value) const
{
    if (value.metaType() != transformedValueClass())
        return u"Unknown"_s;
    const QString code = value.toString();
    if (code == BrazilianPortugueseCode)
        return brazilianPortugueseName(*m_source.currentLocale());
    return m_source.currentLocale()->localizedStringForLanguageCode(code).value_or(u"Unknown"_s);
}

QVariant LanguageCodeToName::reverseTransformedValue(const QVariant &value) const
{
    if (value.metaType() != transformedValueClass())
        return u"en"_s;
    const QString name = value.toString();
    for (const QString &listed : m_source.isoLanguageCodes()) {
        const QString code = listed.toLower();
        if (m_source.currentLocale()->localizedStringForLanguageCode(code) == name)
            return code;
    }
    if (name == brazilianPortugueseName(*m_source.currentLocale()))
        return BrazilianPortugueseCode;
    return {};
}

QVariant CountryCodeToName::transformedValue(const QVariant &value) const
{
    if (value.metaType() != transformedValueClass())
        return u"Unknown"_s;
    return m_source.currentLocale()
        ->localizedStringForRegionCode(value.toString().toLower())
        .value_or(u"Unknown"_s);
}

QVariant CountryCodeToName::reverseTransformedValue(const QVariant &value) const
{
    if (value.metaType() != transformedValueClass())
        return u"US"_s;
    const QString name = value.toString();
    for (const QString &code : m_source.isoRegionCodes()) {
        if (m_source.currentLocale()->localizedStringForRegionCode(code.toLower()) == name)
            return code;
    }
    return u"US"_s;
}
