#include "CountryCodeToName.h"

using namespace Qt::StringLiterals;

QVariant CountryCodeToName::transformedValue(const QVariant &value) const
{
    if (value.metaType() != transformedValueClass())
        return u"Unknown"_s;
    return m_source.currentLocale()->nameOfRegion(value.toString().toLower()).value_or(u"Unknown"_s);
}

QVariant CountryCodeToName::reverseTransformedValue(const QVariant &value) const
{
    if (value.metaType() != transformedValueClass())
        return u"US"_s;
    const QString name = value.toString();
    for (const QString &code : m_source.isoRegionCodes()) {
        if (m_source.currentLocale()->nameOfRegion(code.toLower()) == name)
            return code;
    }
    return u"US"_s;
}
