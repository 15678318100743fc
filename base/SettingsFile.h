#pragma once
#include <QVariantMap>
#include <optional>

/// The text of a settings file: an INI file whose group "General" holds the values. A plain value; any
/// thread.
///
/// People read and edit the file, so values stand there as they would write them: true and false, numbers,
/// dates in ISO form, lists and maps as JSON, everything else as text. Text that would be taken for one of
/// these is in double quotes; a pair of quotes around a text is dropped. Comments and other groups survive a
/// change.
class SettingsFile final
{
public:
    using Values = QVariantMap;

    /// Nothing for bytes that are no settings: not UTF-8, cut off in the middle of a line, or another format.
    static std::optional<SettingsFile> parsed(const QByteArray &bytes);
    /// No settings at all.
    SettingsFile() = default;

    Values values() const;
    /// The same file with some keys given another value, or removed where the value is invalid.
    QByteArray bytesWith(const Values &changes) const;

    /// A value as it stands in the file, without quotes: two values with the same spelling are the same
    /// setting.
    static QString spelling(const QVariant &value);
    /// The value as the file will give it back.
    static QVariant readBack(const QVariant &value);

private:
    QByteArray m_bytes;
};
