#include "StringHelpers.h"

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
