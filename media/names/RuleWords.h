#pragma once
#include <QString>
#include <optional>

/// Words and numbers that several rules recognise. All take a word in lower case.

bool isSeasonWord(const QString &word);
bool isEpisodeWord(const QString &word);
/// A word between the ends of a range: "215 to 220".
bool isRangeWord(const QString &word);

/// The number when the word is one, of at most `maxDigits` digits.
std::optional<int> wholeNumber(const QString &word, qsizetype maxDigits);
/// The number of a word like "07" or "07v2", where a version may follow.
std::optional<int> versionedNumber(const QString &word);
/// The number of a word that counts episodes in Chinese or Japanese: "第12話", "12集".
std::optional<int> countedNumber(const QString &word);
/// The number of a word that counts seasons: "第2季", "第二季", "2期", "시즌2".
std::optional<int> countedSeason(const QString &word);
/// A number in digits, as a word from "one" to "twelve" or as a Roman numeral up to twelve.
std::optional<int> writtenNumber(const QString &word);
/// A month's English name or its first three letters.
bool isMonthName(const QString &word);
/// A year in which films were made.
bool isYear(const QString &word);
