#pragma once
#include <QString>
#include <QVariant>
#include <memory>

/// Turns a value into what a control shows, and back. Main thread.
class ValueTransformer
{
public:
    virtual ~ValueTransformer() = default;

    virtual QVariant transformedValue(const QVariant &value) const = 0;
    /// The value behind what is shown; invalid when there is none.
    virtual QVariant reverseTransformedValue(const QVariant &value) const;
    virtual bool allowsReverseTransformation() const;

    /// Makes a transformer known by name; an empty pointer forgets the name.
    static void setValueTransformer(const std::shared_ptr<const ValueTransformer> &transformer,
                                    const QString &name);
    /// The transformer of that name, or nothing.
    static std::shared_ptr<const ValueTransformer> forName(const QString &name);
};
