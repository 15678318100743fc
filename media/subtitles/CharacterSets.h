#pragma once
#include <QByteArrayList>
#include <QString>

/// The character sets of subtitles in a language (three-letter code) before UTF-8, the likeliest first. Any
/// thread.
QByteArrayList legacyCharacterSets(const QString &language);

/// The detected character set under a name that the decoder knows; empty when unknown.
QByteArray detectedCharacterSet(const QByteArray &bytes);
