#include "ValueTransformer.h"

#include <QHash>

namespace
{
QHash<QString, std::shared_ptr<const ValueTransformer>> &registry()
{
    static QHash<QString, std::shared_ptr<const ValueTransformer>> transformers;
    return transformers;
}
} // namespace

QVariant ValueTransformer::reverseTransformedValue(const QVariant &) const
{
    return {};
}

bool ValueTransformer::allowsReverseTransformation() const
{
    return false;
}

void ValueTransformer::setValueTransformer(const std::shared_ptr<const ValueTransformer> &transformer,
                                           const QString &name)
{
    if (transformer)
        registry().insert(name, transformer);
    else
        registry().remove(name);
}

std::shared_ptr<const ValueTransformer> ValueTransformer::forName(const QString &name)
{
    return registry().value(name);
}
