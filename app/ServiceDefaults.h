#pragma once
#include <base/UserDefaults.h>
#include <net/secrets/Credentials.h>
#include <sources/combined/Ranking.h>
#include <sources/films/FilmSettings.h>
#include <sources/online/RestSettings.h>

/// The settings of the network services in the user defaults. Main thread only.
namespace ServiceDefaults
{
/// Registers the default values. Gives the keys of all settings, for observers.
QStringList registerDefaults(UserDefaults &defaults);
RestSettings restSettings(const UserDefaults &defaults, const Credentials &credentials);
RankingPreferences rankingPreferences(const UserDefaults &defaults);
FilmSettings filmSettings(const UserDefaults &defaults, const Credentials &credentials);
} // namespace ServiceDefaults
