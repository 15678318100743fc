#include "StringHelpers.h"

#include <platform/Bundle.h>

QString String::localize(const QString &key, const QString &)
{
    return Bundle::main().localizedString(key);
}

QString String::localize(const char *key, const char *comment)
{
    return localize(QString::fromUtf8(key), QString::fromUtf8(comment));
}

QString String::removingCharacters(const QString &text, const QSet<char32_t> &characters)
{
    QString kept;
    const auto scalars = text.toUcs4();
    for (const uint scalar : scalars) {
        if (!characters.contains(scalar))
            kept += QString::fromUcs4(reinterpret_cast<const char32_t *>(&scalar), 1);
    }
    return kept;
}
