#pragma once
#include "Behaviours.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QUrlQuery>

/// Invented search records of the subtitle service.
namespace SubtitleRecords
{
inline constexpr int FirstFileId = 9200001;

/// How many records the behaviours give a search.
int count(const Behaviours &behaviours);
/// The records from `first` on, `number` of them at most, as they answer `query`.
QJsonArray page(const Behaviours &behaviours, const QUrlQuery &query, int first, int number);
} // namespace SubtitleRecords
