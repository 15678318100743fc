#pragma once
#include <QString>
#include <QVariant>
#include <memory>

/// Converts a value to its displayed form and back. Main thread.
class ValueTransformer
{
public:
    virtual ~ValueTransformer() = default;

    virtual QVariant transformedValue(const QVariant &value) const = 0;
    /// The value for a displayed form; invalid when there is none.
    virtual QVariant reverseTransformedValue(const QVariant &value) const;
    virtual bool allowsReverseTransformation() const;

    /// Registers a transformer under a name; a null pointer removes the name.
    static void setValueTransformer(const std::shared_ptr<const ValueTransformer> &transformer,
                                    const QString &name);
    /// The transformer of that name, or null.
    static std::shared_ptr<const ValueTransformer> forName(const QString &name);
};
