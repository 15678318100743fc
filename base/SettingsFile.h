#pragma once
#include <QVariantMap>
#include <optional>

/// The bytes of a settings file: an INI file whose group "General" holds the values. Any thread.
///
/// People read and edit the file, so values stand there as they would write them: true and false, whole
/// numbers, dates in ISO form, everything else as text. Text that would be taken for one of these is in
/// double quotes; a pair of quotes around a text is dropped.
namespace SettingsFile
{
/// Nothing for bytes that are no settings: not UTF-8, cut off in the middle of a line, or another format.
std::optional<QVariantMap> values(const QByteArray &bytes);
/// Settings with some keys given another value, or removed where the value is invalid. Comments and other
/// groups stay.
QByteArray changed(const QByteArray &bytes, const QVariantMap &changes);

/// A value as it stands in the file, without quotes: two values with the same spelling are the same setting.
QString spelling(const QVariant &value);
/// The value as the file will give it back.
QVariant readBack(const QVariant &value);
} // namespace SettingsFile
