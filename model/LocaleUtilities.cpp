#include "LocaleUtilities.h"

#include <base/FatalFault.h>
#include <base/StandardOutput.h>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace
{
/// The order is the order of display: what most people look for first, not alphabetical.
constexpr const char *CommonCodes[] = {"en", "fr", "de", "it", "nl", "sv", "es", "da", "pt", "pb", "no",
                                       "he", "ja", "ar", "fi", "el", "is", "mt", "tr", "hr", "zh", "ur",
                                       "hi", "th", "ko", "lt", "pl", "hu", "et", "lv", "se", "fo", "fa",
                                       "ro", "ru", "ga", "sr", "sq", "bg", "cs", "sk", "sl"};

const QString Separator = u"-"_s;
} // namespace

QString brazilianPortugueseName(const Locale &locale)
{
    const auto language = locale.localizedStringForLanguageCode(u"pt"_s);
    const auto region = locale.localizedStringForRegionCode(u"br"_s);
    if (!language || !region)
        fatalFault(u"The locale has no name for Portuguese or for Brazil"_s);
    return *language + u" ("_s + *region + u")"_s;
}

std::shared_ptr<const Locale> LocaleSource::currentLocale() const
{
    return std::make_shared<Locale>(Locale::current());
}

const LocaleSource &LocaleSource::system()
{
    static const LocaleSource source;
    return source;
}

const LocaleUtilities &LocaleUtilities::shared()
{
    static const LocaleUtilities utilities(LocaleSource::system());
    return utilities;
}

QList<Language> LocaleUtilities::commonLanguages() const
{
    const auto locale = m_source.currentLocale();
    QList<Language> languages;
    for (const char *latin : CommonCodes) {
        const QString code = QString::fromLatin1(latin);
        if (const auto name = locale->localizedStringForLanguageCode(code))
            languages.append(Language(*name, code));
        else if (code == BrazilianPortugueseCode)
            languages.append(Language(brazilianPortugueseName(*locale), code));
        else
            printLine(u"no name found for "_s + code);
    }
    return languages;
}

QList<Language> LocaleUtilities::allLanguages() const
{
    const auto locale = m_source.currentLocale();
    QList<Language> languages;
    for (const QString &code : m_source.isoLanguageCodes()) {
        if (const auto name = locale->localizedStringForLanguageCode(code))
            languages.append(Language(*name, code));
    }
    // Entries of one name stay as the locale data lists them.
    std::stable_sort(languages.begin(), languages.end(), [&locale](const Language &a, const Language &b) {
        return locale->compare(a.name(), b.name()) == std::weak_ordering::less;
    });
    return languages;
}

QList<Language> LocaleUtilities::languages() const
{
    const QList<Language> common = commonLanguages();
    const QList<Language> all = allLanguages();
    printLine(QString::number(all.size()));
    QList<Language> others;
    std::copy_if(all.begin(), all.end(), std::back_inserter(others),
                 [&common](const Language &language) { return !common.contains(language); });
    printLine(QString::number(others.size()));
    return common + QList<Language>{Language(Separator, Separator)} + others;
}
