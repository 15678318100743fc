#pragma once
#include <QByteArrayList>
#include <QString>
#include <optional>

/// A text decoded from a character set.
struct LegacyText
{
    QString text;
    bool hasErrors = false; // some bytes are invalid and became U+FFFD

    /// Uses the toolkit's decoders, or iconv for sets that those lack; none for a set that neither knows. Any
    /// thread.
    static std::optional<LegacyText> read(const QByteArray &bytes, const QByteArray &set);
};

/// The character sets of subtitles in a language (three-letter code) before UTF-8, the likeliest first. Any
/// thread.
QByteArrayList legacyCharacterSets(const QString &language);

/// The detected character set under a name that the decoder knows; empty when unknown.
QByteArray detectedCharacterSet(const QByteArray &bytes);
