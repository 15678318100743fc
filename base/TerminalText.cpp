#include "TerminalText.h"

#include <QList>

namespace
{
bool isGap(char32_t c)
{
    return (c >= U'\t' && c <= U'\r') || c == U'\x85' || c == U'\u2028' || c == U'\u2029';
}

bool isShown(char32_t c)
{
    const QChar::Category category = QChar::category(c);
    return category != QChar::Other_Control && category != QChar::Other_Format &&
           category != QChar::Other_Surrogate;
}
} // namespace

QString terminalText(const QString &text)
{
    QString shown;
    shown.reserve(text.size());
    for (const char32_t c : text.toUcs4()) {
        if (isGap(c))
            shown += u' ';
        else if (isShown(c))
            shown += QChar::fromUcs4(c);
    }
    return shown;
}
