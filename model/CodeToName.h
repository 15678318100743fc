#pragma once
#include "LocaleUtilities.h"
#include <base/ValueTransformer.h>
#include <QMetaType>

/// A transformer between codes and names in the person's locale, in both directions. The locale is asked anew
/// for every lookup.
class CodeToName : public ValueTransformer
{
public:
    explicit CodeToName(const LocaleSource &source = LocaleSource::system()) : m_source(source) {}

    static QMetaType transformedValueClass() { return QMetaType::fromType<QString>(); }
    bool allowsReverseTransformation() const override { return true; }

protected:
    const LocaleSource &m_source; // outlives us
};

class LanguageCodeToName final : public CodeToName
{
public:
    using CodeToName::CodeToName;

    /// The name of the code as given, "Unknown" for a code without one and for a value that is no text.
    QVariant transformedValue(const QVariant &value) const override;
    /// The code in lower case; invalid for an unknown name, "en" for a value that is not a text.
    QVariant reverseTransformedValue(const QVariant &value) const override;
};

class CountryCodeToName final : public CodeToName
{
public:
    using CodeToName::CodeToName;

    /// The name of the code in any case, "Unknown" for a code without one and for a value that is no text.
    QVariant transformedValue(const QVariant &value) const override;
    /// The code in the locale data; "US" for an unknown name and for a value that is not a text.
    QVariant reverseTransformedValue(const QVariant &value) const override;
};
