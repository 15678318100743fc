#pragma once
#include <QHash>
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
    virtual QVariant reverseTransformedValue(const QVariant &) const { return {}; }
    virtual bool allowsReverseTransformation() const { return false; }

    /// Registers a transformer under a name; a null pointer removes the name.
    static void setValueTransformer(const std::shared_ptr<const ValueTransformer> &transformer,
                                    const QString &name)
    {
        s_registered.insert(name, transformer);
    }
    /// The transformer of that name, or null.
    static std::shared_ptr<const ValueTransformer> forName(const QString &name)
    {
        return s_registered.value(name);
    }

private:
    static inline QHash<QString, std::shared_ptr<const ValueTransformer>> s_registered;
};
