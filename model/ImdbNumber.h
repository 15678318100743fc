#pragma once
#include <QString>
#include <optional>

/// The number inside an IMDb title id: 990000101 for "tt990000101", "0990000101" or a web address around it.
/// Nothing for people's ids, zero and everything else. Any thread.
std::optional<qint64> imdbNumber(const QString &id);

/// The id as it is written: "tt" and at least seven digits.
QString imdbId(qint64 number);
