#pragma once
#include <QByteArray>
#include <QString>

/// A downloaded subtitle: unpacked, verified, and converted to UTF-8.
struct SubtitleFile
{
    enum class Failure
    {
        None,
        Empty,
        NoSubtitle,
        TooLarge,
        Damaged,
        UnknownArchive // or one locked by a password
    };

    QByteArray original; // unpacked, otherwise as it came
    QByteArray utf8;     // without a byte order mark; line ends unchanged
    QString extension;   // by its content
    Failure failure = Failure::None;

    /// `language` is the three-letter code, for old character sets. Any thread.
    static SubtitleFile read(const QByteArray &bytes, const QString &language);
};
