#include "LocalizedString.h"
#include "Bundle.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

QString String::localize(const QString &key, const QString &)
{
    return Bundle::main().localizedString(key);
}

QString String::localize(const char *key, const char *comment)
{
    return localize(QString::fromUtf8(key), QString::fromUtf8(comment));
}

QString String::fill(const QString &format, const QStringList &texts)
{
    static const QRegularExpression place(u"%(?:([1-9])\\$@|[@d])"_s);
    QString filled;
    qsizetype end = 0;
    qsizetype next = 0;
    for (auto match = place.globalMatch(format); match.hasNext();) {
        const auto mark = match.next();
        const bool isNumbered = mark.hasCaptured(1);
        filled += QStringView(format).mid(end, mark.capturedStart() - end);
        filled += texts.value(isNumbered ? mark.captured(1).toInt() - 1 : next++);
        end = mark.capturedEnd();
    }
    filled += QStringView(format).mid(end);
    return filled;
}

QString String::removingCharacters(const QString &text, const QSet<char32_t> &characters)
{
    QString kept;
    for (const char32_t scalar : text.toUcs4()) {
        if (!characters.contains(scalar))
            kept += QChar::fromUcs4(scalar);
    }
    return kept;
}
