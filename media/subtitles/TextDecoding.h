#pragma once
#include <QByteArray>
#include <QString>

/// A file's text and the character set it was read by.
struct DecodedText
{
    QString text;
    QByteArray characterSet;
};

/// Reads a subtitle's bytes: by a byte order mark, by the zeros of UTF-16 and UTF-32, as UTF-8, as the
/// detector says, or by what its language (three-letter code) used to be written in. Always gives a text;
/// what cannot be read becomes U+FFFD. Any thread.
DecodedText decodedText(const QByteArray &bytes, const QString &language);
