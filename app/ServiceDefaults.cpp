#include "ServiceDefaults.h"

using namespace Qt::StringLiterals;

namespace
{
const QString SubtitleURL = u"SubtitleServiceURL"_s;
const QString SubtitleUser = u"SubtitleServiceUser"_s;
const QString MetadataURL = u"MetadataServiceURL"_s;
// The value is "preferred", "avoided" or "neutral".
const QString HearingImpaired = u"SubtitleHearingImpaired"_s;
const QString ForeignPartsOnly = u"SubtitleForeignPartsOnly"_s;
const QString MachineTranslated = u"SubtitleMachineTranslated"_s;
const QString KeepsOriginalBytes = u"SubtitleKeepsOriginalBytes"_s;

/// The address stored under `key`. Keep an invalid address, so the request fails instead of using the
/// default.
QUrl address(const UserDefaults &defaults, const QString &key, const QUrl &standard)
{
    const QString text = defaults.string(key).value_or(QString()).trimmed();
    return text.isEmpty() ? standard : QUrl(text, QUrl::StrictMode);
}

Preference preference(const UserDefaults &defaults, const QString &key)
{
    return preferenceFromText(defaults.string(key).value_or(QString()));
}
} // namespace

QStringList ServiceDefaults::registerDefaults(UserDefaults &defaults)
{
    const QVariantMap values{{SubtitleURL, RestSettings::standardBase().toString()},
                             {MetadataURL, FilmSettings::standardBase().toString()},
                             {HearingImpaired, u"neutral"_s},
                             {ForeignPartsOnly, u"avoided"_s},
                             {MachineTranslated, u"avoided"_s},
                             {KeepsOriginalBytes, false}};
    defaults.registerDefaults(values);
    return values.keys() << SubtitleUser;
}

RestSettings ServiceDefaults::restSettings(const UserDefaults &defaults, const Credentials &credentials)
{
    RestSettings settings;
    settings.base = address(defaults, SubtitleURL, RestSettings::standardBase());
    settings.userName = defaults.string(SubtitleUser).value_or(QString()).trimmed();
    settings.apiKey = credentials.subtitleKey;
    settings.password = credentials.subtitlePassword;
    settings.asksForMachineTranslated = preference(defaults, MachineTranslated) != Preference::Avoided;
    settings.keepsOriginalBytes = defaults.boolean(KeepsOriginalBytes);
    return settings;
}

RankingPreferences ServiceDefaults::rankingPreferences(const UserDefaults &defaults)
{
    return {preference(defaults, HearingImpaired), preference(defaults, ForeignPartsOnly),
            preference(defaults, MachineTranslated)};
}

FilmSettings ServiceDefaults::filmSettings(const UserDefaults &defaults, const Credentials &credentials)
{
    FilmSettings settings;
    settings.base = address(defaults, MetadataURL, FilmSettings::standardBase());
    settings.key = credentials.metadataKey;
    return settings;
}
