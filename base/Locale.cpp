#include "Locale.h"

#include <unicode/ucol.h>
#include <unicode/uloc.h>

#include <QHash>

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>

using namespace Qt::StringLiterals;

namespace
{
constexpr int32_t MaxNameUnits = 256;
constexpr int32_t MaxIdentifierBytes = 160;
constexpr char English[] = "en";

using DisplayFunction = int32_t (*)(const char *, const char *, UChar *, int32_t, UErrorCode *);

struct Name
{
    QString text;
    UErrorCode status = U_ZERO_ERROR;
};

Name displayName(DisplayFunction function, const QByteArray &locale, const QByteArray &displayLocale)
{
    std::array<UChar, MaxNameUnits> units = {};
    Name name;
    const int32_t length =
        function(locale.constData(), displayLocale.constData(), units.data(), MaxNameUnits, &name.status);
    if (U_SUCCESS(name.status) && length > 0 && length < MaxNameUnits)
        name.text = QString::fromUtf16(units.data(), length);
    return name;
}

/// A name that the display locale's data holds. Without one ICU returns the code itself and a fallback
/// warning; the warning alone also comes with names found in another locale.
std::optional<QString> knownName(DisplayFunction function, const QByteArray &locale,
                                 const QByteArray &displayLocale, const QString &code)
{
    const Name name = displayName(function, locale, displayLocale);
    const bool isEcho =
        name.status == U_USING_DEFAULT_WARNING && name.text.compare(code, Qt::CaseInsensitive) == 0;
    if (name.text.isEmpty() || isEcho)
        return {};
    return name.text;
}

/// Whether ICU has display data for a locale. Without data ICU would show its default locale, and a locale
/// with few names would show codes; every complete locale has these two names.
bool hasDisplayData(const QByteArray &locale)
{
    const Name language = displayName(uloc_getDisplayLanguage, "pt", locale);
    const Name region = displayName(uloc_getDisplayCountry, "und_BR", locale);
    return !language.text.isEmpty() && language.status != U_USING_DEFAULT_WARNING && !region.text.isEmpty() &&
           region.status != U_USING_DEFAULT_WARNING;
}

/// Splits "de_AT.UTF-8@euro" and "de-AT" into "de" and "AT".
QStringList partsOf(const QString &identifier)
{
    QString plain = identifier.section(u'.', 0, 0).section(u'@', 0, 0);
    return plain.replace(u'-', u'_').split(u'_');
}

/// ICU's spelling of "sr_RS.UTF-8@latin": "sr_Latn_RS". Only script modifiers matter.
QByteArray icuIdentifier(const QString &identifier)
{
    static const QHash<QString, QString> scripts{
        {u"latin"_s, u"Latn"_s}, {u"cyrillic"_s, u"Cyrl"_s}, {u"devanagari"_s, u"Deva"_s}};
    QStringList parts = partsOf(identifier);
    const QString script = scripts.value(identifier.section(u'@', 1).toLower());
    if (!script.isEmpty())
        parts.insert(1, script);
    const QByteArray plain = parts.join(u'_').toLatin1();
    std::array<char, MaxIdentifierBytes> buffer = {};
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = uloc_getName(plain.constData(), buffer.data(), MaxIdentifierBytes, &status);
    if (U_FAILURE(status) || length >= MaxIdentifierBytes)
        return English;
    return QByteArray(buffer.data(), length);
}

/// LC_ALL, else LC_MESSAGES, else LANG, unchanged; "C" when none is set.
QString environmentLocaleName()
{
    for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QString value = qEnvironmentVariable(variable);
        if (!value.isEmpty())
            return value;
    }
    return u"C"_s;
}

/// Whether a locale name, with or without a character set ("C.UTF-8"), names no language.
bool isWithoutLanguage(const QString &name)
{
    const QString language = name.section(u'.', 0, 0).section(u'@', 0, 0).toUpper();
    return language.isEmpty() || language == u"C" || language == u"POSIX";
}

bool isLetter(QChar character)
{
    return character.unicode() < 0x80 && character.isLetter();
}

bool isLanguageCode(const QString &text)
{
    return text.size() >= 2 && text.size() <= 3 && std::all_of(text.begin(), text.end(), isLetter);
}

bool isRegionCode(const QString &text)
{
    const auto isDigit = [](QChar character) { return character >= u'0' && character <= u'9'; };
    return (text.size() == 2 && std::all_of(text.begin(), text.end(), isLetter)) ||
           (text.size() == 3 && std::all_of(text.begin(), text.end(), isDigit));
}

struct CloseCollator
{
    void operator()(UCollator *collator) const { ucol_close(collator); }
};

/// Caches the collator: opening one costs more than comparing, and sorting compares many times in one locale.
const UCollator *collatorFor(const QByteArray &identifier)
{
    thread_local QByteArray openedFor;
    thread_local std::unique_ptr<UCollator, CloseCollator> collator;
    if (!collator || openedFor != identifier) {
        UErrorCode status = U_ZERO_ERROR;
        collator.reset(ucol_open(identifier.constData(), &status));
        openedFor = identifier;
    }
    return collator.get();
}

QStringList listOf(const char *const *codes)
{
    QStringList list;
    for (; *codes; ++codes)
        list += QString::fromLatin1(*codes);
    return list;
}
} // namespace

Locale Locale::current()
{
    for (const QString &language : preferredLanguages()) {
        Locale locale(language);
        if (locale.hasOwnDisplayData())
            return locale;
    }
    return Locale(environmentLocaleName());
}

Locale::Locale(const QString &identifier)
    : m_identifier(identifier),
      m_icuIdentifier(languageCode() ? icuIdentifier(identifier) : QByteArray(English)),
      m_displayIdentifier(hasDisplayData(m_icuIdentifier) ? m_icuIdentifier : QByteArray(English))
{
}

QStringList Locale::preferredLanguages()
{
    const QString locale = environmentLocaleName();
    QStringList wanted;
    // As in all message catalogues, the plain C locale means untranslated, whatever LANGUAGE says.
    if (locale != u"C" && locale != u"POSIX")
        wanted = qEnvironmentVariable("LANGUAGE").split(u':', Qt::SkipEmptyParts);
    wanted += locale;
    wanted.removeIf(isWithoutLanguage);
    return wanted;
}

bool Locale::hasOwnDisplayData() const
{
    return languageCode() && m_displayIdentifier == m_icuIdentifier;
}

std::optional<QString> Locale::languageCode() const
{
    const QString code = partsOf(m_identifier).value(0);
    if (isWithoutLanguage(m_identifier) || !isLanguageCode(code))
        return {};
    return code.toLower();
}

std::optional<QString> Locale::localizedStringForLanguageCode(const QString &code) const
{
    if (!isLanguageCode(code))
        return {};
    // ICU looks each name up anew, and lists need hundreds.
    static std::mutex mutex;
    static QHash<QByteArray, std::optional<QString>> names;
    const QByteArray key = m_displayIdentifier + ' ' + code.toLatin1();
    const std::scoped_lock lock(mutex);
    if (!names.contains(key))
        names.insert(key, knownName(uloc_getDisplayLanguage, code.toLatin1(), m_displayIdentifier, code));
    return names.value(key);
}

std::optional<QString> Locale::localizedStringForRegionCode(const QString &code) const
{
    if (!isRegionCode(code))
        return {};
    return knownName(uloc_getDisplayCountry, "und_" + code.toUpper().toLatin1(), m_displayIdentifier, code);
}

std::weak_ordering Locale::compare(const QString &a, const QString &b) const
{
    const UCollator *collator = collatorFor(m_icuIdentifier);
    if (!collator)
        return a.compare(b) <=> 0;
    const auto units = [](const QString &text) { return reinterpret_cast<const UChar *>(text.utf16()); };
    const UCollationResult result = ucol_strcoll(collator, units(a), static_cast<int32_t>(a.size()), units(b),
                                                 static_cast<int32_t>(b.size()));
    return static_cast<int>(result) <=> 0;
}

QStringList Locale::isoLanguageCodes()
{
    return listOf(uloc_getISOLanguages());
}

QStringList Locale::isoRegionCodes()
{
    return listOf(uloc_getISOCountries());
}
