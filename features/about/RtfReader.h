#pragma once
#include "AttributedText.h"
#include <base/Result.h>
#include <QByteArray>

/// Reads the rich text that word processors write: text, bold, italic, sizes, the colour table, unicode and
/// byte escapes (Windows-1252), paragraphs, and web links. Everything else is skipped. Any thread.
///
/// A file that is no rich text, is cut off, nests groups too deeply or is larger than `MaxRtfBytes` gives an
/// Error and no part of its text.
Result<AttributedText> readRtf(const QByteArray &file);
Result<AttributedText> readRtfFile(const QString &path);

constexpr qint64 MaxRtfBytes = 512LL * 1024;
constexpr int MaxRtfDepth = 200; // groups inside groups
