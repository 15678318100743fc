#pragma once
#include <base/Result.h>
#include <QTextCharFormat>

/// Text that looks one way: bold, italic, size, colour and link, where they are set. "\n" ends a paragraph.
struct RtfRun
{
    QString text;
    QTextCharFormat look;
};

/// Reads the rich text that word processors write: text, bold, italic, sizes, colours, unicode and byte
/// escapes (Windows-1252), and web links. Everything else is skipped. A file that is no rich text, is cut
/// off, nests groups too deeply or is too large gives an Error and no part of its text. Any thread.
Result<QList<RtfRun>> readRtf(const QByteArray &file);
Result<QList<RtfRun>> readRtfFile(const QString &path);

constexpr qint64 MaxRtfBytes = 512LL * 1024;
constexpr int MaxRtfDepth = 200; // groups inside groups
