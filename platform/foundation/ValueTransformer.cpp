#include "ValueTransformer.h"

#include <QHash>

#include <utility>

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

void ValueTransformer::setValueTransformer(std::shared_ptr<const ValueTransformer> transformer,
                                           const QString &name)
{
    if (transformer)
        registry().insert(name, std::move(transformer));
    else
        registry().remove(name);
}

std::shared_ptr<const ValueTransformer> ValueTransformer::forName(const QString &name)
{
    return registry().value(name);
}
