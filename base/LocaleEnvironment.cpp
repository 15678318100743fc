#include "LocaleEnvironment.h"

#include <QByteArray>

using namespace Qt::StringLiterals;

namespace
{
bool isPlainC(const QString &name)
{
    return name == u"C" || name == u"POSIX";
}
} // namespace

QString environmentLocaleName()
{
    for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QByteArray value = qgetenv(variable);
        if (!value.isEmpty())
            return QString::fromUtf8(value);
    }
    return u"C"_s;
}

bool isLocaleWithoutLanguage(const QString &name)
{
    const QString language = name.section(u'.', 0, 0).section(u'@', 0, 0);
    return language.isEmpty() || language.compare(u"C", Qt::CaseInsensitive) == 0 ||
           language.compare(u"POSIX", Qt::CaseInsensitive) == 0;
}

QStringList environmentLanguages()
{
    const QString locale = environmentLocaleName();
    QStringList wanted;
    // As in all message catalogues, the plain C locale means untranslated, whatever LANGUAGE says.
    if (!isPlainC(locale))
        wanted = QString::fromUtf8(qgetenv("LANGUAGE")).split(u':', Qt::SkipEmptyParts);
    wanted += locale;
    wanted.removeIf(isLocaleWithoutLanguage);
    return wanted;
}
