#pragma once
#include "Ranking.h"

#include <base/UserDefaults.h>
#include <net/secrets/Credentials.h>
#include <sources/films/FilmSettings.h>
#include <sources/online/RestSettings.h>

/// The settings of the network services in the user defaults. Main thread only.
namespace ServiceDefaults
{
inline const QString SubtitleURL = QStringLiteral("SubtitleServiceURL");
inline const QString SubtitleUser = QStringLiteral("SubtitleServiceUser");
inline const QString MetadataURL = QStringLiteral("MetadataServiceURL");
// The value is "preferred", "avoided" or "neutral".
inline const QString HearingImpaired = QStringLiteral("SubtitleHearingImpaired");
inline const QString ForeignPartsOnly = QStringLiteral("SubtitleForeignPartsOnly");
inline const QString MachineTranslated = QStringLiteral("SubtitleMachineTranslated");
inline const QString KeepsOriginalBytes = QStringLiteral("SubtitleKeepsOriginalBytes");

/// All keys above, for observers.
QStringList keys();
/// Registers the default values.
void registerDefaults(UserDefaults &defaults);
RestSettings restSettings(const UserDefaults &defaults, const Credentials &credentials);
RankingPreferences rankingPreferences(const UserDefaults &defaults);
FilmSettings filmSettings(const UserDefaults &defaults, const Credentials &credentials);
} // namespace ServiceDefaults
