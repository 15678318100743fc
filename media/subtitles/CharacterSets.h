#pragma once
#include <QByteArrayList>
#include <QString>

/// The character sets that subtitles in a language (three-letter code) were written in before UTF-8, the
/// likeliest first. Any thread.
QByteArrayList legacyCharacterSets(const QString &language);

/// What the detector takes the bytes for, under a name that the decoder knows; empty when it cannot tell.
QByteArray detectedCharacterSet(const QByteArray &bytes);
