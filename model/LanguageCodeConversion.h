#pragma once
#include <QHash>
#include <QString>
#include <memory>
#include <optional>

class Locale;

/// The three-letter code of the subtitle services for a two-letter code, looked up as it is in the bundle's
/// "iso639_1_to_iso639_2.plist"; "eng" when the table has none. The table is read once; a missing or
/// malformed one is empty. Any thread.
QString iso639_2LanguageCode(const QString &iso639_1LanguageCode);
/// The same for a locale's own language; nothing when it has none or the table lacks it.
std::optional<QString> iso639_2LanguageCode(const Locale &locale);
/// The whole table, by code. Never null. Any thread.
std::shared_ptr<const QHash<QString, QString>> languageCodeTable();
/// Forgets the table that was read, for tests.
void reloadLanguageCodeTable();
