#include "DropAreaMessage.h"

#include <base/LocalizedString.h>
#include <model/LanguageCodes.h>

#include <QLocale>

namespace
{
using namespace Qt::StringLiterals;

constexpr auto English = "eng"_L1;
constexpr int LongestQuotedText = 60; // characters of a search text in a headline

QString languageName(const QString &code)
{
    return LanguageCodes::shared().name(code, Locale::current());
}

QString shortened(const QString &text)
{
    if (text.size() <= LongestQuotedText)
        return text;
    QString begun = text.first(LongestQuotedText - 1);
    if (begun.back().isHighSurrogate())
        begun.chop(1); // an unpaired surrogate
    return begun.trimmed() + u'…';
}

/// Whether the table has no entry for the code, so that English was sent instead.
bool isUnknown(const SearchLanguage &language)
{
    return !language.preferredCode.isEmpty() && language.preferredCode != "en"_L1 &&
           language.sentCode == English;
}

/// A separate sentence for each number of names, because languages join lists differently.
QString worksWith(const QStringList &names)
{
    const QString format = names.size() == 1   ? String::localize(u"Works with %1$@"_s)
                           : names.size() == 2 ? String::localize(u"Works with %1$@ and %2$@"_s)
                                               : String::localize(u"Works with %1$@, %2$@ and %3$@"_s);
    return String::fill(format, names);
}
} // namespace

DropAreaMessage dropPrompt(const QStringList &companions)
{
    QString hint = String::localize(u"or type a title above"_s);
    if (!companions.isEmpty())
        hint += u'\n' + worksWith(companions);
    return {String::localize(u"Drop a video here"_s), hint};
}

DropAreaMessage nothingFound(const QString &text, const SearchLanguage &language)
{
    const bool unknown = isUnknown(language);
    const QString searched = unknown || language.preferredCode.isEmpty() ? u"en"_s : language.preferredCode;
    const QString headline = String::fill(String::localize(u"Nothing found for “%1$@” in %2$@"_s),
                                          {shortened(text), languageName(searched)});
    return {headline,
            unknown ? languageNotice(language) : String::localize(u"Try fewer words or another language"_s)};
}

DropAreaMessage wordsSearch(const QString &words)
{
    return {String::fill(String::localize(u"Searching for “%@”…"_s), {shortened(words)}),
            String::localize(u"Nothing is known for this very file, so its name is searched for"_s)};
}

QString offlineHint()
{
    return String::localize(
        u"Only the offline catalogue was searched. The preferences tell where to get a key "
        u"for the online service (Services)."_s);
}

QString localRowsNotice(const ServiceStatus::Value &status)
{
    switch (status.missing) {
    case ServiceStatus::Missing::ByBeingOffline:
        return String::localize(u"Offline: showing the local catalogue"_s);
    case ServiceStatus::Missing::ByAFailure:
        return String::localize(u"The online service could not be used: showing the local catalogue"_s);
    case ServiceStatus::Missing::KeyRejected:
        return String::localize(
            u"The online service does not accept the key (see the preferences):\nshowing the local catalogue"_s);
    case ServiceStatus::Missing::ByTheLanguage:
        return String::localize(
            u"The online service has no subtitles in this language:\nshowing the local catalogue"_s);
    case ServiceStatus::Missing::ByAPause:
        return status.reason + u'\n' + String::localize(u"Showing the local catalogue"_s);
    case ServiceStatus::Missing::Nothing:
        break;
    }
    return {};
}

QString leftOutNotice(qint64 shown, qint64 leftOut)
{
    if (leftOut <= 0)
        return {};
    const QLocale locale;
    return String::fill(String::localize(u"Showing %1$@ of %2$@ results; more words find the others"_s),
                        {locale.toString(shown), locale.toString(shown + leftOut)});
}

QString pauseNotice(std::chrono::seconds pause)
{
    return String::fill(String::localize(u"Too many requests, trying again in %@ s"_s),
                        {QLocale().toString(qint64{pause.count()})});
}

QString languageNotice(const SearchLanguage &language)
{
    if (!isUnknown(language))
        return {};
    return String::fill(
        String::localize(u"The services do not know the language “%@”; English was searched"_s),
        {languageName(language.preferredCode)});
}
