#include "BrazilianPortuguese.h"

#include "LocaleSource.h"

#include <base/FatalFault.h>

using namespace Qt::StringLiterals;

QString brazilianPortugueseName(const LocaleNames &locale)
{
    const auto language = locale.nameOfLanguage(u"pt"_s);
    const auto region = locale.nameOfRegion(u"br"_s);
    if (!language || !region)
        fatalFault(u"The locale has no name for Portuguese or for Brazil"_s);
    return *language + u" ("_s + *region + u")"_s;
}
