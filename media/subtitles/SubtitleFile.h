#pragma once
#include <QByteArray>
#include <QString>

/// A subtitle as it was sent, understood: unpacked, checked to be one, and in UTF-8.
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
    QByteArray utf8;     // without a byte order mark, line ends as they came
    QString extension;   // by its content
    Failure failure = Failure::None;

    /// `language` is the three-letter code, for old character sets. Any thread.
    static SubtitleFile read(const QByteArray &bytes, const QString &language);
};
