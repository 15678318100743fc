#pragma once
#include <QHash>
#include <QString>
#include <QVariant>
#include <optional>

/// The text of a settings file: an INI file whose group "General" holds the values. A plain value; any
/// thread.
///
/// The file is made to be read and edited by people: true and false, numbers, ISO dates, lists and maps as
/// JSON, everything else as text. A text that would read as one of these is written in double quotes; a pair
/// of quotes around a text is dropped. Comments and other groups survive a change.
class SettingsFile final
{
public:
    using Values = QHash<QString, QVariant>;

    /// None for bytes that are not a settings file: not UTF-8, truncated within a line, or of another format.
    static std::optional<SettingsFile> parsed(const QByteArray &bytes);

    /// An empty file.
    SettingsFile() = default;

    Values values() const;
    /// The bytes of the file with `changes` applied; an invalid value removes its key.
    QByteArray bytesWith(const Values &changes) const;

    /// The value as written in the file, without quotes. Two values of one spelling are the same setting.
    static QString spelling(const QVariant &value);

private:
    QByteArray m_bytes;
};
