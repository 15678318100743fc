#pragma once
#include "LocaleSource.h"
#include <base/ValueTransformer.h>
#include <QMetaType>

/// Shows a language code as the language's name in the person's locale, and turns a name back into its code.
/// The locale is asked anew for every lookup.
class LanguageCodeToName final : public ValueTransformer
{
public:
    explicit LanguageCodeToName(const LocaleSource &source = LocaleSource::system()) : m_source(source) {}

    static QMetaType transformedValueClass() { return QMetaType::fromType<QString>(); }
    bool allowsReverseTransformation() const override { return true; }

    /// The name of the code as given, "Unknown" for a code without one and for a value that is no text.
    QVariant transformedValue(const QVariant &value) const override;
    /// The code in lower case; invalid for an unknown name, "en" for a value that is not a text.
    QVariant reverseTransformedValue(const QVariant &value) const override;

private:
    const LocaleSource &m_source; // outlives us
};
